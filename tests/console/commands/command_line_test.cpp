#include "console/commands/command_line.h"

#include <algorithm>
#include <cstdlib>

#include <sys/wait.h>

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class CommandLineTest : public ConsoleTest {
 protected:
  /// Runs the built program through the shell. @return its exit code
  static int shell(const std::string& words) { return piped("true", words); }

  /// The same, reading the output of `writer` through a pipe.
  static int piped(const std::string& writer, const std::string& words) {
    const int status = std::system((writer + " | " SPX_PROGRAM " " + words).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  const std::string small = "id,sire,sex,Name\n1,,f,Ada\n2,1,m,Bo\n";
};

TEST_F(CommandLineTest, ExitCodesSayWhatHappened) {
  const std::string faulty = table("faulty.csv", small);
  const std::string sound = table("sound.csv", "id,sire,dob\n1,,1990\n2,1,1995\n");
  const std::string broken = table("broken.csv", "id,sex\n1,x\n");
  const std::string twice = table("twice.csv", "id,stud_id\n1,2\n");
  const struct {
    std::vector<std::string> words;
    int code;
    const char* errors;
  } cases[] = {
      {{}, 2, "no command is given"},
      {{"nonsense"}, 2, "nonsense"},
      {{"summary", "info"}, 2, "info"},
      {{"summary"}, 2, "--studbook FILE"},
      {{"--studbook", sound, "summary", "--colour"}, 2, "--colour"},
      {{"--studbook", twice, "summary"}, 2, "\"id\" and \"stud_id\""},
      {{"--studbook", twice, "--map", "id=id", "summary"}, 0, ""},
      {{"--studbook", sound, "--map", "id", "summary"}, 2, "FIELD=TITLE"},
      {{"--studbook", at("none"), "summary"}, 1, "No such file"},
      {{"--studbook", home, "summary"}, 1, "animals.csv"},
      {{"--studbook", broken, "summary"}, 1, "broken.csv:2"},
      {{"--studbook", sound, "--events", at("none"), "summary"}, 1, "none: cannot be opened"},
      {{"--studbook", faulty, "check"}, 3, ""},
      {{"summary", "--studbook", sound}, 0, ""},
      {{"--studbook", sound, "filters", "--to", at("none")}, 1, "none"},
  };
  for (const auto& [words, code, errors] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    EXPECT_EQ(run(words), code);
    EXPECT_NE(takeErrors().find(errors), std::string::npos) << errors;
    EXPECT_EQ(takeOutput().empty(), code == 1 || code == 2);
  }
  EXPECT_EQ(run({"--help"}), 0);
  EXPECT_NE(takeOutput().find("user-fields"), std::string::npos);
  EXPECT_EQ(run({"--version"}), 0);
  EXPECT_NE(takeOutput().find("PROGRAM:spx_base.1  PROJECT:spx-1.1"), std::string::npos);
}

TEST_F(CommandLineTest, CommandsPrintTheirResultsAlone) {
  const std::string file = table("a.csv", small);
  EXPECT_EQ(run({"--studbook", file, "check"}), 3);
  EXPECT_NE(takeOutput().find("\n\nFound 1 error, 1 note in 2 animals.\n"), std::string::npos);
  EXPECT_EQ(contentOf(at("spx/projects/studbook-errors.txt")),
            "1 is not a male!\n1 was born after birth of offspring 2\n");
  EXPECT_EQ(run({"--studbook", file, "user-fields"}), 0);
  EXPECT_EQ(takeOutput(), "User-defined\nfield         Values\n------------  ------\nName          text\n");
  EXPECT_EQ(run({"--studbook", file, "taxa"}), 0);
  EXPECT_EQ(takeOutput(), "Taxon    Animals\n-------  -------\ngeneric        2\n");
  EXPECT_EQ(run({"--studbook", file, "locations"}), 0);
  EXPECT_EQ(takeOutput(), "the studbook has no locations\n");
  EXPECT_EQ(run({"--studbook", file, "info"}), 0);
  EXPECT_NE(takeOutput().find("Used records            : 7 ("), std::string::npos);
  EXPECT_EQ(run({"--studbook", file, "summary"}), 0);
  EXPECT_NE(takeOutput().find("\nAll                              2  100.0 %       0\n"), std::string::npos);
}

TEST_F(CommandLineTest, ADirectoryGivesAllItsTables) {
  const std::string file = table("animals.csv", "id,location\n1,Far\n");
  table("locations.csv", "level,id,name\nzoo,7,Far\n");
  table("programs.csv", "name\nRescue\n");
  EXPECT_EQ(run({"--studbook", home, "programs"}), 0);
  EXPECT_NE(takeOutput().find("\nRescue\n"), std::string::npos);
  EXPECT_EQ(run({"--studbook", home, "locations"}), 0);
  EXPECT_NE(takeOutput().find("\n7       Far   zoo "), std::string::npos);
  EXPECT_EQ(run({"--studbook", file, "locations"}), 0);  // other tables in the directory of a named table are not used
  EXPECT_NE(takeOutput().find("\n1       Far   Location "), std::string::npos);
}

TEST_F(CommandLineTest, TheExampleHasTheMistakesThatItDescribes) {
  EXPECT_EQ(run({"--studbook", SPX_SOURCE_DIR "/examples/studbook", "check"}), 3);
  const std::string found = takeOutput();
  for (const char* mistake :
       {"rows have the ID 0144", "0021 is female but is the sire of 0055", "0060 is male but is the dam of 0091",
        "0120 was born 2015-05-21, its dam 0127 was born 2017-07-10", "0417 has no record, but is the sire of 0089",
        "\nFound 7 errors, 2 warnings, 1 note in 150 animals.\n"}) {
    EXPECT_NE(found.find(mistake), std::string::npos) << mistake;
  }
}

TEST_F(CommandLineTest, FiltersAreWrittenWholeAndNeverOverAnother) {
  const std::string file = table("a.csv", small);
  EXPECT_EQ(run({"--studbook", file, "filters", "--to", home}), 0);
  const std::string written = contentOf(at("filter_test.csv"));
  EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 8);
  writeContent(at("filter_test.csv"), "mine");
  EXPECT_EQ(run({"--studbook", file, "filters", "--to", home}), 1);
  EXPECT_EQ(contentOf(at("filter_test.csv")), "mine");
  EXPECT_EQ(run({"--studbook", file, "filters", "--to", home, "--overwrite"}), 0);
  EXPECT_EQ(contentOf(at("filter_test.csv")), written);
  for (const auto& entry : std::filesystem::directory_iterator(home)) {
    EXPECT_NE(entry.path().filename().string().rfind(".spx-", 0), 0U) << "left behind";
  }
}

TEST_F(CommandLineTest, TheProgramSurvivesItsSurroundings) {
  const std::string file = table("a.csv", small);
  const std::string quiet = " >" + at("out") + " 2>" + at("err");
  EXPECT_EQ(shell("--studbook " + file + " summary >/dev/full 2>" + at("err")), 1);
  EXPECT_NE(contentOf(at("err")).find("No space left"), std::string::npos);
  EXPECT_EQ(shell("--studbook " + file + " locations 2>" + at("err") + " | true"), 0);
  EXPECT_EQ(contentOf(at("err")), "");
  EXPECT_EQ(shell("--studbook /dev/stdin check <" + file + quiet), 3);
  EXPECT_EQ(piped("cat " + file, "--studbook /dev/stdin check" + quiet), 3);
  unsetenv("HOME");
  EXPECT_EQ(shell("--studbook " + file + " check" + quiet), 3);
  EXPECT_NE(contentOf(at("err")).find("HOME is not set"), std::string::npos);
  setenv("HOME", "/proc/nowhere", 1);
  EXPECT_EQ(shell("--studbook " + file + " check" + quiet), 3);
  EXPECT_NE(contentOf(at("err")).find("cannot create ~/spx in /proc/nowhere"), std::string::npos);
}

}  // namespace
}  // namespace spx::console
