#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <CLI/CLI.hpp>

#include "console/base/nearest_word.h"
#include "console/commands/command.h"
#include "console/help/command_pages.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class HelpTest : public ConsoleTest {
 protected:
  /// The output of a shell command.
  std::string shell(const std::string& line) {
    std::system((line + " >" + at("out") + " 2>&1").c_str());
    return contentOf(at("out"));
  }
};

std::vector<std::string> wordsOf(const std::string& line, const std::string& home) {
  std::istringstream text(line);
  std::vector<std::string> words;
  for (std::string word; text >> word;) {
    if (word.starts_with("examples/")) {
      word = SPX_SOURCE_DIR "/" + word;
    }
    if (word.starts_with("~/")) {
      word = home + word.substr(1);
    }
    words.push_back(word);
  }
  words.erase(words.begin());  // the program
  return words;
}

TEST_F(HelpTest, EveryExampleWorks) {
  std::filesystem::current_path(home);  // some write files
  for (const command_page& page : commandPages()) {
    std::istringstream lines(page.example);
    for (std::string line; std::getline(lines, line);) {
      const int code = run(wordsOf(line, home));
      const int found = page.words == std::string("diff") ? 1 : 3;  // the exit code of the example
      EXPECT_TRUE(code == 0 || (code == found && (found == 1 || page.words == std::string("check")))) << line << "\n"
                                                                                                      << takeErrors();
      EXPECT_NE(line.find(page.words), std::string::npos);
    }
  }
}

void expectPages(const std::vector<command>& commands, const std::string& group) {
  for (const command& each : commands) {
    const std::string words = group + each.name;
    EXPECT_TRUE(!each.words.empty() || findPage(words) != nullptr) << words;
    expectPages(each.words, words + " ");
  }
}

TEST_F(HelpTest, EveryCommandExplainsItself) {
  expectPages(allCommands(), "");
  EXPECT_EQ(run({"view", "set", "--help"}), 0);
  const std::string text = takeOutput();
  EXPECT_NE(text.find("\nExample:\n  spx --project tarrow"), std::string::npos);
  EXPECT_EQ(run({"help", "view", "set"}), 0);
  EXPECT_EQ(takeOutput(), text);
}

TEST_F(HelpTest, WrongWordsSuggestTheNearest) {
  const struct {
    std::vector<std::string> words;
    const char* message;
  } cases[] = {
      {{"lsit"}, "there is no command \"lsit\"; did you mean \"list\"?"},
      {{"zzz"}, "there is no command \"zzz\"\n"},
      {{"project", "craete", "x"}, "\"craete\" in spx project; did you mean \"create\"?"},
      {{"list", "--formt", "json"}, "spx list has no option \"--formt\"; did you mean \"--format\"?"},
      {{"list", "--studbok=x"}, "\"--studbok\"; did you mean \"--studbook\"?"},
      {{"list", "--format", "jsn"}, "\"jsn\" must be one of: text, csv, json; did you mean \"json\"?"},
      {{"list", "--prorating", "yes"}, "spx list has no option \"--prorating\""},
      {{"show", "--", "1", "--format", "csv"}, "\"--format\" is an unexpected argument; options must come before --"},
      {{"taxa", "x"}, "unexpected argument \"x\"; see spx taxa --help"},
      {{"help", "veiw"}, "did you mean \"view\"?"},
      {{"--completion", "fihs"}, "did you mean \"fish\"?"},
  };
  for (const auto& [words, message] : cases) {
    EXPECT_EQ(run(words), 2);
    EXPECT_NE(takeErrors().find(message), std::string::npos) << message;
  }
  EXPECT_EQ(wordDistance("", "ab"), 2U);
  EXPECT_EQ(wordDistance("abcd", "badc"), 2U);
  EXPECT_EQ(wordDistance("kitten", "sitting"), 3U);
}

TEST_F(HelpTest, BashCompletesWords) {
  writeContent(at("try"),
               "source " + at("spx") + "\nCOMP_WORDS=(spx \"$@\"); COMP_CWORD=$#; _spx; echo \"${COMPREPLY[*]}\"\n");
  writeContent(at("spx"), shell(SPX_PROGRAM " --completion bash"));
  const struct {
    const char* typed;
    const char* offered;
  } cases[] = {{"li", "list living life-table life-history\n"},
               {"project cr", "create\n"},
               {"--studbook list project cr", "create\n"},
               {"list --form", "--format\n"},
               {"list --format j", "json\n"},
               {"list --format = c", "csv\n"},
               {"list --sex ''", "female male hermaphrodite abnormal unknown all\n"},
               {"living --on ''", "today\n"},
               {"show ''", "\n"},
               {"help view cl", "clear\n"}};
  for (const auto& [typed, offered] : cases) {
    EXPECT_EQ(shell("bash " + at("try") + " " + typed), offered) << typed;
  }
}

TEST_F(HelpTest, TheManPageHasNoFaults) {
  if (std::system("command -v groff >/dev/null") != 0) {
    GTEST_SKIP() << "groff is not installed";
  }
  EXPECT_EQ(shell("{ " SPX_PROGRAM " --man | groff -man -ww -Tutf8 >/dev/null; }"), "");
  EXPECT_NE(shell(SPX_PROGRAM " --man | groff -man -Tascii -P-cbou").find("view load"), std::string::npos);
}

}  // namespace
}  // namespace spx::console
