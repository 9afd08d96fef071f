#include "spx/core/estimated_dates.h"

#include "spx/support/number_text.h"

namespace spx {
namespace {

// A range of exactly 365 days prints as an accurate date. Kept on purpose.
DATE_ACCURACY accuracyOfRange(std::uint64_t range) {
  if (range == 0 || range == 365) {
    return DATE_ACCURACY::ACCURATE;
  }
  if (range < 30) {
    return DATE_ACCURACY::BY_DAY;
  }
  return range < 365 ? DATE_ACCURACY::BY_MONTH : DATE_ACCURACY::BY_YEAR;
}

std::string yearText(const qs_lib::date_time_record& date) {
  std::string text = std::to_string(date.year);
  if (text.size() < 4) {
    text.insert(0, 4 - text.size(), ' ');
  }
  return text;
}

}  // namespace

std::string formatEstDate(qs_lib::julian_ms date, DATE_ACCURACY accuracy, std::uint64_t range,
                          qs_lib::date_time_set format) {
  if (date == 0) {
    return std::string();
  }
  const qs_lib::date_time_record parts = qs_lib::julianToDate(date);
  std::string mark = "~";
  if (accuracy == DATE_ACCURACY::DATE_RANGE) {
    mark = "+";
    accuracy = accuracyOfRange(range);
  }
  switch (accuracy) {
    case DATE_ACCURACY::ACCURATE:
      return qs_lib::formatJulianDate(date, format);
    case DATE_ACCURACY::BY_DAY:
      return mark + qs_lib::formatJulianDate(date, format);
    case DATE_ACCURACY::BY_MONTH:
      return mark + qs_lib::getMonthName(parts.month, false) + format.separator + yearText(parts);
    case DATE_ACCURACY::BY_YEAR:
      return mark + yearText(parts);
    default:
      return "unknown";
  }
}

std::string formatEstDate(qs_lib::julian_ms date, DATE_ACCURACY accuracy, std::uint64_t range) {
  return formatEstDate(date, accuracy, range, qs_lib::getDateTimeFormat());
}

std::string convertDays(double days) {
  if (days < DAYS_PER_WEEK) {
    return qs_lib::realToString(days, 1) + " days";
  }
  if (days < DAYS_PER_MONTH) {
    return qs_lib::realToString(days / DAYS_PER_WEEK, 1) + " weeks";
  }
  if (days < DAYS_PER_YEAR) {
    return qs_lib::realToString(days / DAYS_PER_MONTH, 1) + " months";
  }
  return qs_lib::realToString(days / DAYS_PER_YEAR, 1) + " years";
}

double ageError(double age, DATE_ACCURACY accuracy) {
  switch (accuracy) {
    case DATE_ACCURACY::BY_DAY:
      return 1.0 / age;
    case DATE_ACCURACY::BY_WEEK:
      return DAYS_PER_WEEK / age;
    case DATE_ACCURACY::BY_MONTH:
      return DAYS_PER_MONTH / age;
    case DATE_ACCURACY::BY_YEAR:
      return DAYS_PER_YEAR / age;
    default:
      return 1.0;
  }
}

}  // namespace spx
