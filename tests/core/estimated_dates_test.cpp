#include "spx/core/estimated_dates.h"

#include <cmath>

#include <gtest/gtest.h>

namespace spx {
namespace {

// The texts of a date for all accuracies from 0 to one beyond the last.
std::string byAccuracy(const char* date, std::uint64_t range) {
  const qs_lib::date_time_set british{qs_lib::DATE_ORDER::DAY_MONTH_YEAR, '/'};
  const qs_lib::julian_ms moment = qs_lib::dateToJulian(std::string(date));
  std::string texts;
  for (std::uint32_t accuracy = 0; accuracy <= 8; ++accuracy) {
    texts += formatEstDate(moment, DATE_ACCURACY{accuracy}, range, british) + "|";
  }
  return texts;
}

TEST(EstimatedDates, ShowTheMarkAndThePartsThatAreKnown) {
  const std::pair<std::uint64_t, const char*> ranges[] = {{0, "29/02/2004"}, {1, "+29/02/2004"},   {29, "+29/02/2004"},
                                                          {30, "+Feb/2004"}, {364, "+Feb/2004"},   {365, "29/02/2004"},
                                                          {366, "+2004"},    {UINT64_MAX, "+2004"}};
  for (const auto& [range, text] : ranges) {
    EXPECT_EQ(byAccuracy("2004-02-29", range),
              std::string("29/02/2004|~29/02/2004|unknown|~Feb/2004|~2004|") + text + "|unknown|unknown|unknown|");
  }
  EXPECT_EQ(byAccuracy("0987-12-31", 366),
            "31/12/0987|~31/12/0987|unknown|~Dec/ 987|~ 987|+ 987|unknown|unknown|unknown|");
  EXPECT_EQ(byAccuracy("", 30), "|||||||||");
}

TEST(EstimatedDates, ChooseTheUnitOfASpanBeforeRounding) {
  const std::pair<double, const char*> spans[] = {
      {3, "3.0 days"},       {6.99, "7.0 days"},      {7, "1.0 weeks"},
      {30.6, "4.4 weeks"},   {30.6001, "1.0 months"}, {365.24, "11.9 months"},
      {365.25, "1.0 years"}, {-400, "-400.0 days"},   {std::nan(""), "nan years"}};
  for (const auto& [days, text] : spans) {
    EXPECT_EQ(convertDays(days), text);
  }
}

TEST(EstimatedDates, DivideTheUnitOfTheAccuracyByTheAge) {
  const double errors[] = {1, 0.1, 0.7, 3.06001, 36.525, 1, 1, 1};
  for (std::uint32_t accuracy = 0; accuracy < std::size(errors); ++accuracy) {
    EXPECT_DOUBLE_EQ(ageError(10, DATE_ACCURACY{accuracy}), errors[accuracy]) << accuracy;
    EXPECT_EQ(std::isinf(ageError(0, DATE_ACCURACY{accuracy})), errors[accuracy] != 1) << accuracy;
  }
}

}  // namespace
}  // namespace spx
