#include "console/base/known_date.h"

namespace spx::console {

std::string dateText(const known_date& date) {
  const std::string iso = qs_lib::julianToISO(qs_lib::dayToMs(date.day));
  const qs_lib::civil_date day = qs_lib::civilFromDay(date.day);
  switch (date.accuracy) {
    case DATE_ACCURACY::BY_WEEK:
      return "~" + iso;
    case DATE_ACCURACY::BY_MONTH:
      return qs_lib::getMonthName(static_cast<std::uint16_t>(day.month), false) + " " + std::to_string(day.year);
    case DATE_ACCURACY::BY_YEAR:
      return std::to_string(day.year);
    case DATE_ACCURACY::DATE_RANGE:
      return iso + " ±" + std::to_string(date.range) + " d";
    case DATE_ACCURACY::UNKNOWN:
      return iso + "?";
    default:
      return iso;
  }
}

}  // namespace spx::console
