// Date texts, moments of any size and the texts of estimated dates. A line is a date text; if it
// begins with a number, that number is also used as a moment and as a day.
#include "spx/core/estimated_dates.h"
#include "spx/support/julian_date.h"
#include "spx/support/number_text.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

using namespace qs_lib;

bool isReadable(const std::string& iso) {
  return iso.size() == 10 && iso[0] != '-';
}

void tryText(const std::string& text) {
  setUseTime(true);
  const julian_ms moment = dateToJulian(text);
  require(dateToJulian(julianToISO(moment)) == moment - moment % 1000, "a moment changes by its text");
  setUseTime(false);
  const julian_ms day = dayToMs(msToDay(moment));
  require(dateToJulian(julianToISO(moment)) == day, "a day changes by its text");
  require(dateToJulian(julianToYYYYMMDD(moment)) == day, "a day changes by its short text");
  require(dateToJulian(julianToDate(moment)) == moment, "a moment changes by its parts");
  require(formatJulianDate(moment) == julianToISO(moment), "the default format is another one");
}

void tryDay(day_number day) {
  require(dayFromCivil(civilFromDay(day)) == day, "a day changes by its calendar day");
  const std::string iso = julianToISO(dayToMs(day));
  require(iso.empty() == (day == 0), "a day without a text");
  require(!isReadable(iso) || dateToJulian(iso) == dayToMs(day), "a written day is another day");
}

void tryMoment(julian_ms moment) {
  julianToDate(moment);
  julianToISO(moment);
  for (std::uint32_t order = 0; order < 4; ++order) {
    formatJulianDate(moment, {static_cast<DATE_ORDER>(order), '/'});
  }
}

/// Every moment from day 1 on gives a text, and so does every span of days.
void tryEstimate(julian_ms moment, const std::string& line) {
  const auto accuracy = static_cast<DATE_ACCURACY>(line.size() % 9);
  for (const std::uint64_t range : {std::uint64_t{0}, std::uint64_t{29}, std::uint64_t{30}, moment}) {
    require(formatEstDate(moment, accuracy, range).empty() == (moment == 0) || moment < MS_PER_DAY,
            "an estimated date without a text");
  }
  const double real = realNumber(line);
  require(!convertDays(real).empty(), "days without a text");
  ageError(real, accuracy);
  realToString(real, static_cast<int>(line.size() % 20));
  percentString(real, static_cast<double>(moment), 2);
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  for (const std::string& line : linesOf(asText(data, size))) {
    const std::uint64_t number = wholeNumber(line);
    tryText(line);
    tryDay(static_cast<qs_lib::day_number>(number));
    tryMoment(number);
    tryEstimate(number, line);
  }
  return 0;
}
