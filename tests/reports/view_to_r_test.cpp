#include "spx/reports/view_to_r.h"

#include "tests/support/book_test.h"

namespace spx {
namespace {

using ViewToR = BookTest;

TEST_F(ViewToR, ComparesWithTheExpectedBlocks) {
  const std::string hostile = "x\nstop()\r\nstop()\rstop()";  // must not become commands
  Book.name = hostile;
  Subspecies.add(hostile);
  View.addTaxon(hostile);
  View.addDeme(kew);
  View.addDeme(MetaPop.addMember("3", hostile));
  View.census_month = 12;
  View.low_inbreeding = View.high_inbreeding = 0.125;
  View.low_generation = View.high_generation = 0;
  View.low_age = View.high_age = 365.25;
  std::string text;
  for (const auto& [monitor, settings] :
       {std::pair{true, true}, std::pair{true, false}, std::pair{false, true}, std::pair{false, false}}) {
    qs_lib::setUseTime(settings);
    text += viewToR(monitor, settings);
    EXPECT_EQ(qs_lib::isUseTime(), settings);
  }
  qs_lib::setUseTime(false);
  text += writeComment("longer than wide", "v", 3) + writeComment("", "v", -7);
  expectFile(masked(text, qs_lib::getTodayAsISO()), "reports/expected/view_to_r.txt");
}

}  // namespace
}  // namespace spx
