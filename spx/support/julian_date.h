#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// A civil day as its Julian Day Number, in the Gregorian calendar extended to all years:
/// 1970-01-01 is 2440588, 2000-01-01 is 2451545. 0 means that no date is known.
using day_number = std::uint32_t;

/// A moment in milliseconds: the day number times MS_PER_DAY, and the time since midnight.
using julian_ms = std::uint64_t;

/// The length of a day, in milliseconds.
inline constexpr julian_ms MS_PER_DAY = 86400000;

/// The moment at which a day begins.
constexpr julian_ms dayToMs(day_number day) {
  return julian_ms{day} * MS_PER_DAY;
}

/// The day of a moment; the time of day is dropped. Defined for moments of day numbers only.
constexpr day_number msToDay(julian_ms moment) {
  return static_cast<day_number>(moment / MS_PER_DAY);
}

/// A calendar day whose year is never narrowed. Year 0 comes before year 1; years before it are
/// negative.
struct civil_date {
  std::int64_t year = 0;  ///< astronomical: 0 is 1 BC
  unsigned month = 0;     ///< 1 to 12
  unsigned day = 0;       ///< of the month, from 1
};

/// The calendar day of a day number; 0 is a day of the year -4713.
SPX_EXPORT civil_date civilFromDay(std::uint64_t day);

/// The day number of a calendar day; nothing for a day that does not exist (month 13, 30 February)
/// or has no day number.
SPX_EXPORT std::optional<day_number> dayFromCivil(const civil_date& date);

/// The number of days of a month from 1 to 12; 0 for any other month.
SPX_EXPORT unsigned daysInMonth(std::int64_t year, unsigned month);

/// A calendar breakdown of a moment. Years that do not fit into 16 bits are taken modulo 65536;
/// civilFromDay() gives the full year.
struct date_time_record {
  /// @{
  /// A part of the date, counted from 1, or of the time of day, counted from 0; all are 0 for no
  /// date.
  std::uint16_t month = 0;
  std::uint16_t year = 0;
  std::uint16_t day = 0;
  std::uint16_t hour = 0;
  std::uint16_t minute = 0;
  std::uint16_t second = 0;
  std::uint16_t millisecond = 0;
  /// @}
};

/// The order in which the parts of a date are displayed.
enum class DATE_ORDER : std::uint32_t { YEAR_MONTH_DAY, DAY_MONTH_YEAR, MONTH_DAY_YEAR };

/// How dates are displayed: the order of the parts and the character between them.
struct date_time_set {
  DATE_ORDER order = DATE_ORDER::YEAR_MONTH_DAY;  ///< of year, month and day
  char separator = '-';                           ///< between the parts
};

/// A span of days. Each use says whether the ends belong to it.
struct DateSpan {
  day_number start = 0;  ///< the first bound
  day_number end = 0;    ///< the second bound
};

/// Writes a moment as "YYYY-MM-DD", followed by "Thh:mm:ss" when isUseTime() and the moment has a
/// time of day. Day 0 gives the empty text. Years have at least four digits, those before 0 a sign;
/// dateToJulian() reads the years 0000 to 9999 back.
SPX_EXPORT std::string julianToISO(julian_ms moment);

/// Writes the day of a moment as "YYYYMMDD", with years as in julianToISO(); day 0 gives the empty
/// text.
SPX_EXPORT std::string julianToYYYYMMDD(julian_ms moment);

/// Breaks a moment down; day 0 gives a cleared record.
SPX_EXPORT date_time_record julianToDate(julian_ms moment);

/// Reads "YYYY" (1 January), "YYYY-MM" (its first day), "YYYY-MM-DD" or "YYYYMMDD"; after a whole
/// date a time "hh:mm", "hh:mm:ss" or "hh:mm:ss.fff" may follow, set off by "T" or a blank.
/// @return 0 for every other text, days that do not exist included: a wrong date never becomes
///         another day
SPX_EXPORT julian_ms dateToJulian(const std::string& text);

/// Joins a record; 0 when its day or its time of day does not exist.
SPX_EXPORT julian_ms dateToJulian(const date_time_record& record);

/// @{
/// Writes a moment for display in the current format, with " hh:mm:ss" where julianToISO would add
/// the time. Day 0 gives the empty text.
SPX_EXPORT std::string formatJulianDate(julian_ms moment);
SPX_EXPORT std::string formatJulianDate(julian_ms moment, date_time_set format);
/// @}

/// @{
/// The process-wide display format; at first year, month and day with "-" between them.
SPX_EXPORT date_time_set getDateTimeFormat();
SPX_EXPORT void setDateTimeFormat(date_time_set format);
/// @}

/// Fills the record with the present local date and time.
SPX_EXPORT void getToday(date_time_record& record);

/// Today's local date as ISO text, with the time of day when isUseTime().
SPX_EXPORT std::string getTodayAsISO();

/// Sets every part of the record to 0.
SPX_EXPORT void resetDateTime(date_time_record& record);

/// @{
/// Switches for the whole process whether times of day are shown with dates; off at first.
SPX_EXPORT void setUseTime(bool use);
SPX_EXPORT bool isUseTime();
/// @}

/// The English name of a month counted from 1: "January" when full, else "Jan"; the empty text for
/// any other number.
SPX_EXPORT std::string getMonthName(std::uint16_t month, bool full);
}  // namespace qs_lib
