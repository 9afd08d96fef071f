#include <cstdlib>
#include <filesystem>

#include <sys/wait.h>

#include "spx/core/animal_data.h"
#include "spx/core/user_fields.h"

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class OddFilesTest : public ConsoleTest {
 protected:
  /// Runs the program in the home directory, where names need no directory. @return its exit code
  int runAtHome(const std::string& words, const std::string& before = "") const {
    const std::string line = "cd '" + home + "' && " + before + SPX_PROGRAM " " + words + " 2>errors.txt >/dev/null";
    const int status = std::system(line.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  const std::string animals = table("a.csv", "id,sex\n1,m\n2,f\n");
  const std::string studbook = at("s");
};

TEST_F(OddFilesTest, NamesMeanFilesWhateverSqliteReadsIntoThem) {
  for (const std::string name : {"file:u.studbook", ":memory:", "a b?mode=ro.studbook", "-x.studbook"}) {
    const std::string option = "'--studbook=" + name + "' ";
    for (const char* words : {"import a.csv", "import a.csv --replace", "animal set 1 rearing=hand", "check"}) {
      EXPECT_EQ(runAtHome(option + words), 0) << name << " " << words << contentOf(at("errors.txt"));
    }
    EXPECT_TRUE(std::filesystem::exists(at(name))) << name;
    EXPECT_TRUE(std::filesystem::exists(at(name + ".bak"))) << name;
  }
}

TEST_F(OddFilesTest, AnEmptyNameIsWrongUsageAndReplacesNothing) {
  ASSERT_EQ(run({"import", animals, "--studbook", studbook}), 0);
  const std::string sound = contentOf(studbook);
  const std::vector<std::string> cases[] = {{"import", "", "--studbook", studbook},
                                            {"import", animals, "--events", "", "--studbook", studbook},
                                            {"--studbook", "", "import", animals},
                                            {"--studbook", animals, "--locations", "", "check"}};
  for (const auto& words : cases) {
    takeErrors();
    EXPECT_EQ(run(words), 2);
    EXPECT_NE(takeErrors().find("the name is empty"), std::string::npos);
  }
  EXPECT_EQ(contentOf(studbook), sound);
}

TEST_F(OddFilesTest, BackupsOfLinkedAndHalfReplacedStudbooks) {
  std::filesystem::create_directory(at("d"));
  ASSERT_EQ(run({"import", animals, "--studbook", at("d/s")}), 0);
  std::filesystem::create_symlink("d/s", at("link"));
  takeErrors();
  EXPECT_EQ(run({"import", animals, "--replace", "--studbook", at("link")}), 0);
  EXPECT_NE(takeErrors().find("is kept as " + std::filesystem::canonical(at("d")).string() + "/s.bak\n"),
            std::string::npos);
  // A kill between two renames leaves both names linked to one file.
  std::filesystem::remove(at("d/s.bak"));
  std::filesystem::create_hard_link(at("d/s"), at("d/s.bak"));
  EXPECT_EQ(run({"import", animals, "--replace", "--studbook", at("d/s")}), 0);
  EXPECT_FALSE(std::filesystem::exists(at("d/s.bak.new")));
  EXPECT_EQ(run({"--studbook", at("d/s.bak"), "check"}), 0);
}

TEST_F(OddFilesTest, WideTablesAreReadOrRefusedWithTheReason) {
  const auto repeated = [](const std::string& text, int times) {
    std::string all;
    for (int time = 0; time < times; ++time) {
      all += text;
    }
    return all;
  };
  const std::string notes = table("n.csv", "id" + repeated(",note", 3000) + "\n1" + repeated(",x", 3000) + "\n");
  loadStudbook({notes, "", "", "", {}});
  ASSERT_EQ(user_field_list.size(), 3000U);
  EXPECT_EQ(user_field_list[0].name + user_field_list[1].name + user_field_list[2999].name, "notenote 2note 3000");
  const std::string blank = table("b.csv", "id" + repeated(",", 16000) + "chip\n1" + repeated(",", 15999) + "x,7\n");
  loadStudbook({blank, "", "", "", {}});
  ASSERT_EQ(user_field_list.size(), 2U) << "columns without a title and a value are not fields";
  EXPECT_EQ(user_field_list[0].name + Animals.records.back().user_data[0], "column 16000x");
  EXPECT_EQ(user_field_list[1].name + Animals.records.back().user_data[1], "chip7");
  const std::string quoted = table("q.csv", "id,text\n1,\"" + repeated(",\n", 1 << 20) + "\"\n");
  EXPECT_EQ(run({"--studbook", quoted, "check"}), 0) << takeErrors();
  const std::pair<std::vector<std::string>, const char*> refused[] = {
      {{"import", notes, "--studbook", studbook}, "has 3001 columns: a studbook file holds"},
      {{"check", "--studbook", table("w.csv", "id" + repeated(",", 60000) + "\n")}, "has 60001 columns; a table can"}};
  for (const auto& [words, reason] : refused) {
    takeErrors();
    EXPECT_EQ(run(words), 1);
    const std::string errors = takeErrors();
    EXPECT_NE(errors.find(reason), std::string::npos) << errors;
  }
  EXPECT_FALSE(std::filesystem::exists(studbook));
}

TEST_F(OddFilesTest, AFileSizeLimitIsAFailureWithAReason) {
  std::string rows = "id,sex\n";
  for (int animal = 1; animal < 20000; ++animal) {
    rows += std::to_string(animal) + ",m\n";
  }
  table("l.csv", rows);
  EXPECT_EQ(runAtHome("import l.csv --studbook s", "ulimit -f 64; "), 1);
  EXPECT_NE(contentOf(at("errors.txt")).find("/s: "), std::string::npos) << contentOf(at("errors.txt"));
  EXPECT_FALSE(std::filesystem::exists(studbook));
}

}  // namespace
}  // namespace spx::console
