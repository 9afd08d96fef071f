#include "spx/support/julian_date.h"

#include <ctime>
#include <limits>
#include <string_view>

#include <sys/time.h>

namespace qs_lib {
namespace {
// Constructors of other files use dates while the library is loaded, so this file has only constants
// and plain values.
constexpr std::uint64_t DAYS_PER_ERA = 146097;  // 400 years, after which the calendar repeats
constexpr std::int64_t YEARS_PER_ERA = 400;

// Day 0 lies in the year -4713. The eras are counted from 1 March of the year -4800, so that
// all numbers are positive and the leap day is the last day of its year.
constexpr std::uint64_t DAYS_BEFORE_ZERO = 32044;
constexpr std::int64_t FIRST_YEAR = -4800;

constexpr char MONTH_NAMES[][10] = {"January", "February", "March",     "April",   "May",      "June",
                                    "July",    "August",   "September", "October", "November", "December"};

date_time_set current_format;
bool use_time = false;

struct time_parts {
  unsigned hour = 0;
  unsigned minute = 0;
  unsigned second = 0;
  unsigned millisecond = 0;
};

time_parts timeFromMs(julian_ms moment) {
  const auto ms = static_cast<unsigned>(moment % MS_PER_DAY);
  return {ms / 3600000, ms / 60000 % 60, ms / 1000 % 60, ms % 1000};
}

bool isTime(const time_parts& time) {
  return time.hour < 24 && time.minute < 60 && time.second < 60 && time.millisecond < 1000;
}

julian_ms msFromTime(const time_parts& time) {
  return ((julian_ms{time.hour} * 60 + time.minute) * 60 + time.second) * 1000 + time.millisecond;
}

julian_ms joinMoment(const civil_date& date, const time_parts& time) {
  const std::optional<day_number> day = dayFromCivil(date);
  return day && isTime(time) ? dayToMs(*day) + msFromTime(time) : 0;
}

void appendTwoDigits(std::string& text, unsigned number) {
  const char digits[] = {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
  text.append(digits, sizeof digits);
}

void appendYear(std::string& text, std::int64_t year) {
  if (year < 0) {
    text += '-';
    year = -year;
  }
  if (year > 9999) {
    text += std::to_string(year);
    return;
  }
  appendTwoDigits(text, static_cast<unsigned>(year / 100));
  appendTwoDigits(text, static_cast<unsigned>(year % 100));
}

void appendClock(std::string& text, const time_parts& time) {
  appendTwoDigits(text, time.hour);
  text += ':';
  appendTwoDigits(text, time.minute);
  text += ':';
  appendTwoDigits(text, time.second);
}

void appendTime(std::string& text, julian_ms moment, char before) {
  if (!use_time || moment % MS_PER_DAY == 0) {
    return;
  }
  text += before;
  appendClock(text, timeFromMs(moment));
}

bool isKnown(julian_ms moment) {
  return moment >= MS_PER_DAY;
}

std::string isoDay(const civil_date& date) {
  std::string text;
  appendYear(text, date.year);
  text += '-';
  appendTwoDigits(text, date.month);
  text += '-';
  appendTwoDigits(text, date.day);
  return text;
}

/// Reads a text from its start. Each take...() succeeds or does not move.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : left_(text) {}

  bool atEnd() const { return left_.empty(); }

  bool take(char expected) {
    if (left_.empty() || left_.front() != expected) {
      return false;
    }
    left_.remove_prefix(1);
    return true;
  }

  /// Takes exactly count digits as a number.
  bool takeDigits(std::size_t count, unsigned& number) {
    if (left_.size() < count) {
      return false;
    }
    unsigned value = 0;
    for (const char digit : left_.substr(0, count)) {
      if (digit < '0' || digit > '9') {
        return false;
      }
      value = value * 10 + static_cast<unsigned>(digit - '0');
    }
    number = value;
    left_.remove_prefix(count);
    return true;
  }

  /// Takes the digits after the point of a second; those below a millisecond are dropped.
  bool takeFraction(unsigned& milliseconds) {
    unsigned digit = 0;
    unsigned weight = 100;
    if (!takeDigits(1, digit)) {
      return false;
    }
    do {
      milliseconds += digit * weight;
      weight /= 10;
    } while (takeDigits(1, digit));
    return true;
  }

 private:
  std::string_view left_;
};

enum class date_extent { NONE, PART, WHOLE };

/// Reads the date at the start of the text. A missing month is January, a missing day is 1.
date_extent readDate(DateReader& reader, civil_date& date) {
  unsigned year = 0;
  date.month = date.day = 1;
  if (!reader.takeDigits(4, year)) {
    return date_extent::NONE;
  }
  date.year = year;
  if (reader.atEnd()) {
    return date_extent::PART;
  }
  const bool dashed = reader.take('-');
  if (!reader.takeDigits(2, date.month)) {
    return date_extent::NONE;
  }
  if (dashed && reader.atEnd()) {
    return date_extent::PART;
  }
  const bool separated = !dashed || reader.take('-');
  return separated && reader.takeDigits(2, date.day) ? date_extent::WHOLE : date_extent::NONE;
}

bool readTime(DateReader& reader, time_parts& time) {
  if (!(reader.take('T') || reader.take(' ')) || !reader.takeDigits(2, time.hour) || !reader.take(':') ||
      !reader.takeDigits(2, time.minute)) {
    return false;
  }
  if (reader.take(':')) {
    return reader.takeDigits(2, time.second) && (!reader.take('.') || reader.takeFraction(time.millisecond));
  }
  return true;
}

std::uint16_t narrow(std::int64_t number) {
  return static_cast<std::uint16_t>(number);
}
}  // namespace

unsigned daysInMonth(std::int64_t year, unsigned month) {
  constexpr unsigned DAYS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) {
    return 0;
  }
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : DAYS[month - 1];
}

civil_date civilFromDay(std::uint64_t day) {
  const std::uint64_t shifted = day + DAYS_BEFORE_ZERO;
  const auto day_of_era = static_cast<unsigned>(shifted % DAYS_PER_ERA);
  // Leap days come after 1460, 36524 and 146096 days: taking them out leaves years of 365 days.
  const unsigned year_of_era = (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const unsigned day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  // From March on the months repeat 31, 30, 31, 30, 31 days: five months of 153.
  const unsigned march_month = (5 * day_of_year + 2) / 153;
  const unsigned month = march_month < 10 ? march_month + 3 : march_month - 9;
  const auto era = static_cast<std::int64_t>(shifted / DAYS_PER_ERA);
  return {FIRST_YEAR + era * YEARS_PER_ERA + year_of_era + (month <= 2 ? 1 : 0), month,
          day_of_year - (153 * march_month + 2) / 5 + 1};
}

std::optional<day_number> dayFromCivil(const civil_date& date) {
  constexpr std::int64_t LAST_YEAR = 12000000;  // well beyond the last day number
  if (date.year <= FIRST_YEAR || date.year > LAST_YEAR || date.day < 1 ||
      date.day > daysInMonth(date.year, date.month)) {
    return std::nullopt;
  }
  const std::int64_t year = date.year - FIRST_YEAR - (date.month <= 2 ? 1 : 0);
  const std::int64_t march_month = date.month <= 2 ? date.month + 9 : date.month - 3;
  const std::int64_t day = 365 * year + year / 4 - year / 100 + year / 400 + (153 * march_month + 2) / 5 + date.day -
                           1 - static_cast<std::int64_t>(DAYS_BEFORE_ZERO);
  if (day < 0 || day > std::numeric_limits<day_number>::max()) {
    return std::nullopt;
  }
  return static_cast<day_number>(day);
}

std::string julianToISO(julian_ms moment) {
  if (!isKnown(moment)) {
    return {};
  }
  std::string text = isoDay(civilFromDay(moment / MS_PER_DAY));
  appendTime(text, moment, 'T');
  return text;
}

std::string julianToYYYYMMDD(julian_ms moment) {
  if (!isKnown(moment)) {
    return {};
  }
  const civil_date date = civilFromDay(moment / MS_PER_DAY);
  std::string text;
  appendYear(text, date.year);
  appendTwoDigits(text, date.month);
  appendTwoDigits(text, date.day);
  return text;
}

date_time_record julianToDate(julian_ms moment) {
  date_time_record record;
  if (isKnown(moment)) {
    const civil_date date = civilFromDay(moment / MS_PER_DAY);
    const time_parts time = timeFromMs(moment);
    record = {narrow(date.month),  narrow(date.year),   narrow(date.day),        narrow(time.hour),
              narrow(time.minute), narrow(time.second), narrow(time.millisecond)};
  }
  return record;
}

julian_ms dateToJulian(const std::string& text) {
  DateReader reader(text);
  civil_date date;
  time_parts time;
  const date_extent extent = readDate(reader, date);
  if (extent == date_extent::NONE) {
    return 0;
  }
  if (extent == date_extent::WHOLE && !reader.atEnd() && !readTime(reader, time)) {
    return 0;
  }
  return reader.atEnd() ? joinMoment(date, time) : 0;
}

julian_ms dateToJulian(const date_time_record& record) {
  return joinMoment({record.year, record.month, record.day},
                    {record.hour, record.minute, record.second, record.millisecond});
}

std::string formatJulianDate(julian_ms moment) {
  return formatJulianDate(moment, current_format);
}

std::string formatJulianDate(julian_ms moment, date_time_set format) {
  if (!isKnown(moment)) {
    return {};
  }
  const civil_date date = civilFromDay(moment / MS_PER_DAY);
  const bool month_first = format.order == DATE_ORDER::MONTH_DAY_YEAR;
  const bool year_first = format.order == DATE_ORDER::YEAR_MONTH_DAY;
  std::string text;
  if (year_first) {
    appendYear(text, date.year);
    text += format.separator;
  }
  appendTwoDigits(text, year_first || month_first ? date.month : date.day);
  text += format.separator;
  appendTwoDigits(text, year_first || month_first ? date.day : date.month);
  if (!year_first) {
    text += format.separator;
    appendYear(text, date.year);
  }
  appendTime(text, moment, ' ');
  return text;
}

date_time_set getDateTimeFormat() {
  return current_format;
}

void setDateTimeFormat(date_time_set format) {
  current_format = format;
}

void getToday(date_time_record& record) {
  timeval now{};
  gettimeofday(&now, nullptr);
  std::tm local{};
  tzset();  // localtime_r need not notice that the host has changed the zone
  localtime_r(&now.tv_sec, &local);
  record = {narrow(local.tm_mon + 1), narrow(local.tm_year + 1900), narrow(local.tm_mday),     narrow(local.tm_hour),
            narrow(local.tm_min),     narrow(local.tm_sec),         narrow(now.tv_usec / 1000)};
}

std::string getTodayAsISO() {
  date_time_record now;
  getToday(now);
  std::string text = isoDay({now.year, now.month, now.day});
  if (use_time) {
    text += 'T';
    appendClock(text, {now.hour, now.minute, now.second});
  }
  return text;
}

void resetDateTime(date_time_record& record) {
  record = {};
}

void setUseTime(bool use) {
  use_time = use;
}

bool isUseTime() {
  return use_time;
}

std::string getMonthName(std::uint16_t month, bool full) {
  if (month < 1 || month > 12) {
    return {};
  }
  const std::string_view name = MONTH_NAMES[month - 1];
  return std::string(full ? name : name.substr(0, 3));
}
}  // namespace qs_lib
