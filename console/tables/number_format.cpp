#include "console/tables/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "spx/support/julian_date.h"

namespace spx::console {
namespace {

using qs_lib::day_number;

constexpr double MAX_SERIAL = 2958466;  // the first day of the year 10000
constexpr int SECONDS_PER_DAY = 86400;

/// The letters of the first section that are not literal text, in lower case.
std::string formatLetters(std::string_view code) {
  std::string letters;
  for (std::size_t at = 0; at < code.size() && code[at] != ';'; ++at) {
    const char letter = code[at];
    if (letter == '\\' || letter == '_' || letter == '*') {
      ++at;  // the next character is literal, or gives a width
    } else if (letter == '"' || letter == '[') {
      at = std::min(code.find(letter == '"' ? '"' : ']', at + 1), code.size());
    } else {
      letters += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
  }
  return letters;
}

std::string twoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

/// The day number on which the serial number 0 falls.
day_number originOf(double serial, bool origin_is_1904) {
  if (origin_is_1904) {
    return qs_lib::msToDay(qs_lib::dateToJulian("1904-01-01"));
  }
  // Spreadsheets count 29 February 1900 as serial number 60, but that day did not exist.
  return qs_lib::msToDay(qs_lib::dateToJulian(serial < 61 ? "1899-12-31" : "1899-12-30"));
}

std::string timeText(int seconds) {
  return seconds == 0
             ? std::string()
             : "T" + twoDigits(seconds / 3600) + ":" + twoDigits(seconds / 60 % 60) + ":" + twoDigits(seconds % 60);
}

std::string dateText(double serial, NUMBER_FORM form, bool origin_is_1904) {
  double whole = std::floor(serial);
  int seconds = static_cast<int>(std::lround((serial - whole) * SECONDS_PER_DAY));
  if (seconds == SECONDS_PER_DAY) {
    seconds = 0;
    ++whole;
  }
  const day_number day = originOf(serial, origin_is_1904) + static_cast<day_number>(whole);
  return shortenedDate(qs_lib::julianToISO(qs_lib::dayToMs(day)).substr(0, 10) + timeText(seconds), form);
}

std::string plainText(double number) {
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, std::end(buffer), number);
  const std::string text(buffer, end);
  // Whole numbers, such as IDs, never have an exponent.
  constexpr double MOST_EXACT = 9007199254740992.0;
  if (text.find('e') != std::string::npos && std::floor(number) == number && std::abs(number) <= MOST_EXACT) {
    return std::to_string(static_cast<long long>(number));
  }
  return text;
}

}  // namespace

number_format readNumberFormat(std::string_view code) {
  const std::string letters = formatLetters(code);
  if (letters.find("general") != std::string::npos || letters.find("standard") != std::string::npos) {
    return {};
  }
  const auto has = [&](char letter) { return letters.find(letter) != std::string::npos; };
  if (has('y')) {
    return {has('d') ? NUMBER_FORM::DAY : has('m') ? NUMBER_FORM::MONTH : NUMBER_FORM::YEAR};
  }
  // "m" stands for months and for minutes.
  if (has('d') || (has('m') && !has('h') && !has('s'))) {
    return {NUMBER_FORM::DAY};
  }
  if (letters.size() > 1 && letters.find_first_not_of('0') == std::string::npos) {
    return {NUMBER_FORM::PADDED, letters.size()};
  }
  return {};
}

number_format builtInNumberFormat(std::size_t identifier) {
  constexpr std::size_t MONTH_AND_YEAR = 17;
  if (identifier == MONTH_AND_YEAR) {
    return {NUMBER_FORM::MONTH};
  }
  const auto lies = [&](std::size_t first, std::size_t last) { return identifier >= first && identifier <= last; };
  // The last two ranges are East Asian date formats.
  const bool is_date = lies(14, 16) || identifier == 22 || lies(27, 31) || lies(50, 54) || lies(57, 58);
  return {is_date ? NUMBER_FORM::DAY : NUMBER_FORM::NUMBER};
}

std::string numberText(double number, const number_format& format, bool origin_is_1904) {
  const bool is_date =
      format.form == NUMBER_FORM::DAY || format.form == NUMBER_FORM::MONTH || format.form == NUMBER_FORM::YEAR;
  if (is_date && number >= (origin_is_1904 ? 0 : 1) && number < MAX_SERIAL) {
    return dateText(number, format.form, origin_is_1904);
  }
  std::string text = plainText(number);
  if (format.form == NUMBER_FORM::PADDED && text.find_first_not_of("0123456789") == std::string::npos) {
    text.insert(0, format.digits - std::min(format.digits, text.size()), '0');
  }
  return text;
}

std::string shortenedDate(std::string date, NUMBER_FORM form) {
  constexpr std::string_view MIDNIGHT = "T00:00:00";
  constexpr std::size_t DAY_SIZE = 10;
  const std::size_t time = std::min(date.size(), DAY_SIZE);
  if (date.compare(time, MIDNIGHT.size(), MIDNIGHT) == 0 &&
      date.find_first_not_of(".0Z", time + MIDNIGHT.size()) == std::string::npos) {
    date.resize(time);
  }
  if (date.size() == DAY_SIZE && form == NUMBER_FORM::MONTH && date.ends_with("-01")) {
    date.resize(7);
  } else if (date.size() == DAY_SIZE && form == NUMBER_FORM::YEAR && date.ends_with("-01-01")) {
    date.resize(4);
  }
  return date;
}

}  // namespace spx::console
