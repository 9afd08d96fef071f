// Projects at the command line: their life history, their studbook, their views, their removal.
#include <filesystem>

#include "spx/support/julian_date.h"

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class ProjectTest : public ConsoleTest {
 protected:
  ProjectTest() {
    EXPECT_EQ(run({"project", "create", "zoo"}), 0);
    takeOutput();
  }

  /// Runs a command on the project. @return its exit code, standard output and standard error
  std::string on(std::vector<std::string> words) {
    words.insert(words.begin(), {"--project", "zoo"});
    const int code = run(words);
    return std::to_string(code) + " " + takeOutput() + takeErrors();
  }

  const std::string directory = at("spx/projects/zoo");
  const std::string animals = "id,sire,dam,sex,birth_date\n1,WILD,WILD,male,1990\n2,WILD,WILD,female,1991\n";
};

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(ProjectTest, KeepsItsLifeHistory) {
  EXPECT_EQ(on({"life-history", "set", "gestation=180", "latin-name=Capra ibex", "max-litter-size=2"}), "0 ");
  const std::string kept = contentOf(directory + "/taxon.biology");
  const std::pair<const char*, const char*> wrong[] = {{"gestation=-1", "gestation"},
                                                       {"max-litter-size=x", "max-litter-size"},
                                                       {"reproductive-system=eggs", "oviparous"},
                                                       {"wingspan=1", "wingspan"},
                                                       {"gestation", "KEY=VALUE"}};
  for (const auto& [assignment, named] : wrong) {
    const std::string answer = on({"life-history", "set", "common-name=Ibex", assignment});
    EXPECT_EQ(answer.substr(0, 2), "2 ") << assignment;
    EXPECT_TRUE(contains(answer, named)) << answer;
    EXPECT_EQ(contentOf(directory + "/taxon.biology"), kept) << assignment;
  }
  EXPECT_EQ(on({"life-history", "save", at("ibex.biology")}), "0 ");
  EXPECT_EQ(on({"life-history", "save", at("ibex.biology")}).front(), '1') << "not without --overwrite";
  EXPECT_EQ(on({"life-history", "set", "gestation=1"}), "0 ");
  EXPECT_EQ(on({"life-history", "load", at("ibex.biology")}), "0 ");
  EXPECT_EQ(contentOf(directory + "/taxon.biology"), kept);
  const std::string shown = on({"life-history", "show"});
  EXPECT_TRUE(contains(shown, " 180.00  days  Gestation length")) << shown;
  EXPECT_TRUE(contains(shown, " not set  days  Days after birth")) << shown;
  EXPECT_TRUE(contains(shown, "Capra ibex")) << shown;
}

TEST_F(ProjectTest, RefusesWhatCannotBeMeant) {
  const std::string book = at("a.csv");
  writeContent(book, animals);
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"life-history", "set", "male-reproductive-upper=700", "male-reproductive-lower=900"},
       "2 spx: male-reproductive-lower is above male-reproductive-upper\n"},
      {{"--studbook", book, "export", "pedigree", "--to", ""}, "a directory has a name"},
      {{"--studbook", book, "--mapping", at("nope.map"), "list"}, "nope.map does not exist; spx import writes it"},
  };
  for (const auto& [words, says] : cases) {
    const std::string answer = on(words);
    EXPECT_TRUE(answer.starts_with("2 ") && contains(answer, says)) << answer;
  }
}

TEST_F(ProjectTest, RefusesALifeHistoryWithoutNumbers) {
  EXPECT_EQ(on({"life-history", "set", "gestation=180"}), "0 ");
  const std::string file = directory + "/taxon.biology";
  const std::string sound = contentOf(file);
  writeContent(at("a.csv"), animals);
  for (const char* value : {"1e999", "long", ""}) {
    std::string changed = sound;
    writeContent(file, changed.replace(sound.find("180.00"), 6, value));
    const std::string answer = on({"--studbook", at("a.csv"), "trace-parents"});
    EXPECT_EQ(answer, "1 spx: " + file + ": GESTATION: \"" + value + "\" is not a number\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory + "/reports"));
  }
}

TEST_F(ProjectTest, FindsItsStudbook) {
  EXPECT_EQ(on({"summary"}).front(), '2') << "it has none";
  std::filesystem::create_directories(at("spx/studbooks"));
  writeContent(at("spx/studbooks/zoo.csv"), animals);
  EXPECT_EQ(on({"summary"}).front(), '0');
  writeContent(at("other.csv"), animals + "3,1,2,male,1995\n");
  EXPECT_TRUE(contains(on({"--studbook", at("other.csv"), "summary", "--format", "json"}), "\"records\":3"));
  EXPECT_EQ(run({"--project", "none", "summary"}), 1);
  EXPECT_TRUE(contains(takeErrors(), "none"));
  writeContent(directory + "/zoo.project", "[PROJECT]\n");
  const std::string damaged = on({"summary"});
  EXPECT_EQ(damaged.front(), '1');
  EXPECT_TRUE(contains(damaged, "zoo.project")) << damaged;
}

TEST_F(ProjectTest, KeepsItsViews) {
  std::filesystem::create_directories(at("spx/studbooks"));
  writeContent(at("spx/studbooks/zoo.csv"), animals);
  EXPECT_EQ(on({"view", "set", "sex=male", "low-inbreeding=0.123456"}).front(), '0');
  EXPECT_EQ(on({"view", "save", "males"}).front(), '0');
  EXPECT_EQ(on({"view", "clear"}).front(), '0');
  EXPECT_FALSE(contains(on({"view", "show"}), "0.123456"));
  EXPECT_EQ(on({"view", "load", "males"}).front(), '0');
  EXPECT_TRUE(contains(on({"view", "show"}), "0.123456"));
  EXPECT_EQ(on({"view", "set", "sex=both"}).front(), '2');
  EXPECT_EQ(on({"--view", "males", "list"}).front(), '2') << "before the command";
  writeContent(directory + "/views/broken.view", "[VIEW]\n");
  EXPECT_EQ(on({"view", "load", "broken"}).front(), '1');
  EXPECT_TRUE(contains(on({"view", "show"}), "0.123456")) << "the view is unchanged";
}

TEST_F(ProjectTest, IsSetAsideWhenRemoved) {
  const std::string today = qs_lib::julianToYYYYMMDD(qs_lib::dateToJulian(qs_lib::getTodayAsISO()));
  writeContent(directory + "/reports/note", "kept");
  EXPECT_EQ(run({"project", "remove", "zoo"}), 0);
  EXPECT_EQ(takeOutput(), "Removed project zoo\n");
  EXPECT_EQ(contentOf(at("spx/removed/zoo-" + today + "/reports/note")), "kept");
  EXPECT_FALSE(std::filesystem::exists(directory));
  EXPECT_EQ(run({"project", "remove", "zoo"}), 1);
  EXPECT_EQ(run({"project", "create", "zoo"}), 0);
  EXPECT_EQ(run({"project", "remove", "zoo"}), 0);
  EXPECT_TRUE(std::filesystem::exists(at("spx/removed/zoo-" + today + "-2")));
}

}  // namespace
}  // namespace spx::console
