#include "spx/analyses/analysis.h"

#include <tuple>

#include "tests/support/book_test.h"

namespace spx {
namespace {

struct SpokenAnalysis : Analysis {
  void reportXml() override { steps += "xml "; }
  void reportConsole() override { steps += "console "; }
  std::string steps;
};

using AnalysisBase = BookTest;

TEST_F(AnalysisBase, NamesItsReportAndReportsInOrder) {
  const std::tuple<const char*, const char*, bool, SEX, bool, std::string> cases[] = {
      {"projects", "parents", true, SEX::MALE, false, "projects/parents-male xml "},
      {"a", "b", true, SEX::ALL, true, "a/b-all console xml "},
      {"a", "", false, SEX::ALL, false, "a/ xml "},
      {"a", "", true, SEX::FEMALE, false, "a/-female xml "},
      {"~/r", "b.c", false, SEX::ALL, false, home + "/r/b.c xml "},
      {"a~", "b", true, SEX{77}, false, "a~/b- xml "}};
  for (const auto& [directory, stem, append_sex, sex, verbose, expected] : cases) {
    SpokenAnalysis analysis;
    EXPECT_EQ(analysis.secondsUsed(), 0) << "the timer runs";
    EXPECT_FALSE(analysis.initialize());
    EXPECT_EQ(takeErrors(), "No animals in list\n");
    analysis.setReportDirectory(directory);
    analysis.setFileStem(stem);
    analysis.setAppendSex(append_sex);
    View.sex = sex;
    qs_lib::setVerbose(verbose);
    analysis.report();
    EXPECT_EQ(analysis.reportFile() + " " + analysis.steps, expected);
  }
}

}  // namespace
}  // namespace spx
