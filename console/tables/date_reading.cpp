#include "console/tables/date_reading.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <vector>

#include "spx/support/julian_date.h"

#include "console/base/quoted_text.h"
#include "console/tables/folded_text.h"
#include "console/tables/number_format.h"

namespace spx::console {
namespace {

constexpr std::size_t LONGEST = 64;
constexpr int NO_NUMBER = -1;
constexpr std::string_view YEAR_ZERO = "0000";

// Folded, and as short as they may be: a longer word names the month when a full name begins with it.
constexpr std::array<std::array<std::string_view, 4>, 12> MONTHS = {{
    {"january", "januar", "janvier", "enero"},
    {"february", "februar", "fevrier", "febrero"},
    {"march", "marz", "mars", "marzo"},
    {"april", "april", "avril", "abril"},
    {"may", "mai", "mai", "mayo"},
    {"june", "juni", "juin", "junio"},
    {"july", "juli", "juillet", "julio"},
    {"august", "august", "aout", "agosto"},
    {"september", "september", "septembre", "septiembre"},
    {"october", "oktober", "octobre", "octubre"},
    {"november", "november", "novembre", "noviembre"},
    {"december", "dezember", "decembre", "diciembre"},
}};

// Other shortenings, and the other German names.
constexpr std::pair<std::string_view, int> OTHER_MONTHS[] = {
    {"janner", 1}, {"janv", 1}, {"feber", 2}, {"maerz", 3}, {"mrz", 3}, {"juil", 7}, {"sept", 9}, {"setiembre", 9},
};

constexpr std::string_view ROUGH_WORDS[] = {"~",
                                            "ca",
                                            "c",
                                            "circa",
                                            "about",
                                            "abt",
                                            "approx",
                                            "around",
                                            "est",
                                            "estimated",
                                            "etwa",
                                            "um",
                                            "zirka",
                                            "env",
                                            "environ",
                                            "vers",
                                            "hacia",
                                            "aprox",
                                            "aproximadamente",
                                            "geschatzt",
                                            "estime",
                                            "estimado"};

constexpr std::string_view FILLERS[] = {"de", "del", "of", "the", "st", "nd", "rd",
                                        "th", "er",  "le", "den", "el", "im", "en"};

constexpr std::string_view UNKNOWN_WORDS[] = {
    "?",    "??",   "???",       "-",       "--",       "\xE2\x80\x93", "\xE2\x80\x94",
    "unk",  "unk.", "unbekannt", "inconnu", "inconnue", "desconocido",  "desconocida",
    "k.a.", "n.d.", "nd",        "s.d.",    "no data",  "not known",    "keine angabe"};

template <typename Words>
bool isOneOf(std::string_view word, const Words& words) {
  return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

/// The month that a folded word names; 0 for none. Three letters are enough unless two months share
/// them: French "jui" may be June or July.
int monthOf(std::string_view word) {
  for (const auto& [name, month] : OTHER_MONTHS) {
    if (word == name) {
      return month;
    }
  }
  if (word.size() < 3) {
    return 0;
  }
  int found = 0;
  for (std::size_t month = 0; month < MONTHS.size(); ++month) {
    const bool named = std::any_of(MONTHS[month].begin(), MONTHS[month].end(),
                                   [&](std::string_view name) { return name.starts_with(word); });
    if (named && found != 0) {
      return 0;
    }
    found = named ? static_cast<int>(month) + 1 : found;
  }
  return found;
}

struct token {
  int number = NO_NUMBER;
  std::size_t digits = 0;
  int month = 0;  ///< of a month name

  bool isYear() const { return digits == 4; }
  bool isSmall() const { return digits == 1 || digits == 2; }
};

/// A date cut into numbers and month names.
struct date_tokens {
  std::vector<token> tokens;
  bool rough = false;
  bool understood = true;  ///< whether every word was understood
};

bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

bool isBetween(char letter) {
  constexpr std::string_view BETWEEN = " ./-,()";
  return BETWEEN.find(letter) != std::string_view::npos;
}

token numberToken(std::string_view digits) {
  token number;
  number.digits = digits.size();
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number.number);
  if (result.ec != std::errc()) {
    number.number = NO_NUMBER;
  }
  return number;
}

void addWord(date_tokens& date, std::string_view word) {
  if (isOneOf(word, ROUGH_WORDS)) {
    date.rough = true;
  } else if (const int month = monthOf(word); month != 0) {
    date.tokens.push_back({NO_NUMBER, 0, month});
  } else if (!isOneOf(word, FILLERS)) {
    date.understood = false;
  }
}

date_tokens cut(std::string_view text) {
  date_tokens date;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    if (isDigit(text[at])) {
      at = std::min(text.find_first_not_of("0123456789", at), text.size());
      date.tokens.push_back(numberToken(text.substr(begin, at - begin)));
    } else if (isBetween(text[at])) {
      ++at;
    } else if (text[at] == '~' || text[at] == '?') {
      date.rough = true;
      ++at;
    } else {
      while (at < text.size() && !isDigit(text[at]) && !isBetween(text[at]) && text[at] != '?') {
        ++at;
      }
      addWord(date, text.substr(begin, at - begin));
    }
  }
  return date;
}

std::string digitsOf(int number, std::size_t width) {
  const std::string text = std::to_string(number);
  return std::string(width - std::min(width, text.size()), '0') + text;
}

/// YYYY-MM-DD, or YYYY-MM or YYYY when the rest is 0; empty when there is no such day.
std::string dateText(int year, int month, int day) {
  if (year <= 0 || month > 12 || (month == 0 && day != 0)) {
    return {};
  }
  std::string text = digitsOf(year, 4);
  if (month != 0) {
    text += "-" + digitsOf(month, 2);
  }
  if (day != 0) {
    text += "-" + digitsOf(day, 2);
  }
  return qs_lib::dateToJulian(text) == 0 ? std::string() : text;
}

date_reading made(DATE_FORM form, int year, int month, int day) {
  std::string text = dateText(year, month, day);
  return {text.empty() ? DATE_FORM::NOT_A_DATE : form, std::move(text)};
}

bool canBe(int year, int month, int day) {
  return !dateText(year, month, day).empty();
}

/// Numbers alone, the year last.
date_reading readYearLast(int first, int second, int year, DATE_ORDER order) {
  if (first == 0 && second == 0) {
    return made(DATE_FORM::PARTLY_ZERO, year, 0, 0);
  }
  const bool day_first = canBe(year, second, first) && order != DATE_ORDER::MONTH_FIRST;
  const bool month_first = canBe(year, first, second) && order != DATE_ORDER::DAY_FIRST;
  if (day_first && month_first && first != second) {
    return {DATE_FORM::AMBIGUOUS, {}};
  }
  if (!day_first && !month_first) {
    return {};
  }
  if (first == 0 || second == 0) {
    return made(DATE_FORM::PARTLY_ZERO, year, std::max(first, second), 0);
  }
  return day_first ? made(DATE_FORM::DAY_FIRST, year, second, first)
                   : made(DATE_FORM::MONTH_FIRST, year, first, second);
}

date_reading readYearFirst(int year, int month, int day) {
  return made(month == 0 || day == 0 ? DATE_FORM::PARTLY_ZERO : DATE_FORM::YEAR_FIRST, year, month, day);
}

date_reading readThree(const std::vector<token>& t, DATE_ORDER order) {
  if (t[0].isYear() && t[1].month != 0 && t[2].isSmall()) {
    return made(DATE_FORM::NAMED_MONTH, t[0].number, t[1].month, t[2].number);
  }
  if (t[0].isYear() && t[1].isSmall() && t[2].isSmall()) {
    return readYearFirst(t[0].number, t[1].number, t[2].number);
  }
  if (!t[2].isYear()) {
    return {};
  }
  if (t[1].month != 0 && t[0].isSmall()) {
    return made(DATE_FORM::NAMED_MONTH, t[2].number, t[1].month, t[0].number);
  }
  if (t[0].month != 0 && t[1].isSmall()) {
    return made(DATE_FORM::NAMED_MONTH, t[2].number, t[0].month, t[1].number);
  }
  if (t[0].isSmall() && t[1].isSmall()) {
    return readYearLast(t[0].number, t[1].number, t[2].number, order);
  }
  return {};
}

date_reading readTwo(const std::vector<token>& t) {
  for (std::size_t year = 0; year < 2; ++year) {
    const token& other = t[1 - year];
    if (t[year].isYear() && other.month != 0) {
      return made(DATE_FORM::NAMED_MONTH, t[year].number, other.month, 0);
    }
    if (t[year].isYear() && other.isSmall()) {
      const DATE_FORM form = other.number == 0 ? DATE_FORM::PARTLY_ZERO
                             : year == 0       ? DATE_FORM::YEAR_FIRST
                                               : DATE_FORM::MONTH_YEAR;
      return made(form, t[year].number, other.number, 0);
    }
  }
  return {};
}

bool hasYearZero(const std::vector<token>& tokens) {
  return std::any_of(tokens.begin(), tokens.end(), [](const token& each) { return each.isYear() && each.number == 0; });
}

/// 12/05/98, May 98: complete but for the first half of the year.
bool hasShortYear(const std::vector<token>& t) {
  if (t.size() == 3) {
    return t[2].digits == 2 && std::none_of(t.begin(), t.end(), [](const token& each) { return each.isYear(); });
  }
  return t.size() == 2 && t[0].month != 0 && t[1].digits == 2;
}

date_reading readTokens(const date_tokens& date, DATE_ORDER order) {
  const std::vector<token>& tokens = date.tokens;
  if (!date.understood || tokens.empty()) {
    return {};
  }
  if (hasYearZero(tokens)) {
    return {DATE_FORM::YEAR_ZERO, {}};
  }
  if (hasShortYear(tokens)) {
    return {DATE_FORM::SHORT_YEAR, {}};
  }
  switch (tokens.size()) {
    case 1:
      return tokens[0].isYear() ? made(DATE_FORM::PLAIN, tokens[0].number, 0, 0) : date_reading();
    case 2:
      return readTwo(tokens);
    case 3:
      return readThree(tokens, order);
    default:
      return {};
  }
}

/// 1990s, 1990er, the 1990s; also 1990's.
std::optional<std::string> readDecade(std::string_view text) {
  constexpr std::string_view BEFORE[] = {"the ", "annees ", "anos ", "los ", "les "};
  for (const std::string_view word : BEFORE) {
    if (text.starts_with(word)) {
      text.remove_prefix(word.size());
      if (text.size() == 4 && word.front() == 'a') {
        return text[3] == '0' && canBe(numberToken(text).number, 0, 0) ? std::optional(std::string(text) + "s")
                                                                       : std::nullopt;
      }
    }
  }
  const bool is_decade = text.size() > 4 && std::all_of(text.begin(), text.begin() + 4, isDigit) && text[3] == '0' &&
                         (text.substr(4) == "s" || text.substr(4) == "er" || text.substr(4) == "'s");
  if (!is_decade || !canBe(numberToken(text.substr(0, 4)).number, 0, 0)) {
    return std::nullopt;
  }
  return std::string(text.substr(0, 4)) + "s";
}

/// The day numbers of 1927 to 2100; shorter numbers are years.
std::optional<std::string> readSerial(std::string_view text) {
  const std::string_view whole = text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
  if (whole.size() != 5 || !std::all_of(whole.begin(), whole.end(), isDigit)) {
    return std::nullopt;
  }
  const int serial = numberToken(whole).number;
  constexpr int FIRST = 10000;
  constexpr int LAST = 73415;
  if (serial < FIRST || serial > LAST) {
    return std::nullopt;
  }
  return numberText(serial, {NUMBER_FORM::DAY}, false);
}

/// A time of midnight after a date, which spreadsheets add.
std::string_view withoutMidnight(std::string_view text) {
  for (const std::string_view midnight : {" 00:00:00", " 00:00", " 0:00:00", " 0:00", " 12:00:00 am"}) {
    if (text.ends_with(midnight)) {
      return text.substr(0, text.size() - midnight.size());
    }
  }
  return text;
}

/// Whether the text needs no conversion: it stands for a missing date, or dateToJulian() accepts it.
bool isPlain(std::string_view text) {
  constexpr std::string_view NO_DATE[] = {"", ".", "na", "n/a", "unknown"};
  constexpr std::size_t LONGEST_NO_DATE = 7;
  return (text.size() <= LONGEST_NO_DATE && isOneOf(foldedText(text), NO_DATE)) ||
         (!text.starts_with(YEAR_ZERO) && qs_lib::dateToJulian(std::string(text)) != 0);
}

date_reading readFolded(std::string_view text, DATE_ORDER order) {
  if (isOneOf(text, UNKNOWN_WORDS)) {
    return {DATE_FORM::UNKNOWN, {}};
  }
  if (const auto decade = readDecade(text)) {
    return {DATE_FORM::DECADE, *decade};
  }
  if (const auto serial = readSerial(text)) {
    return {DATE_FORM::SERIAL, *serial};
  }
  const date_tokens date = cut(withoutMidnight(text));
  date_reading reading = readTokens(date, order);
  if (date.rough && reading.form < DATE_FORM::AMBIGUOUS) {
    return {DATE_FORM::ROUGH, "~" + reading.text};
  }
  return reading;
}

}  // namespace

date_reading readDate(std::string_view text, DATE_ORDER order) {
  if (isPlain(text)) {
    return {DATE_FORM::PLAIN, std::string(text)};
  }
  date_reading reading = text.size() > LONGEST ? date_reading() : readFolded(foldedText(text), order);
  if (reading.form >= DATE_FORM::AMBIGUOUS) {
    reading.text = text;
  }
  return reading;
}

DATE_ORDER provenOrder(std::string_view text) {
  if (isPlain(text) || text.size() > LONGEST) {
    return DATE_ORDER::UNKNOWN;
  }
  const date_tokens date = cut(withoutMidnight(foldedText(text)));
  const std::vector<token>& t = date.tokens;
  const bool is_numbers = date.understood && t.size() == 3 && t[0].isSmall() && t[1].isSmall() && t[2].isYear();
  if (!is_numbers || t[0].number == t[1].number) {
    return DATE_ORDER::UNKNOWN;
  }
  const bool day_first = canBe(t[2].number, t[1].number, t[0].number);
  const bool month_first = canBe(t[2].number, t[0].number, t[1].number);
  if (day_first == month_first) {
    return DATE_ORDER::UNKNOWN;
  }
  return day_first ? DATE_ORDER::DAY_FIRST : DATE_ORDER::MONTH_FIRST;
}

std::string dateFault(std::string_view text) {
  switch (readDate(text, DATE_ORDER::UNKNOWN).form) {
    case DATE_FORM::AMBIGUOUS:
      return quotedText(text) + " can be read day first or month first; write YYYY-MM-DD";
    case DATE_FORM::YEAR_ZERO:
      return quotedText(text) + " is not a date: there is no year 0; leave the cell empty when the date is not known";
    case DATE_FORM::SHORT_YEAR:
      return quotedText(text) + " has a two-digit year; write all four digits";
    default:
      return quotedText(text) + " is not a date (write YYYY-MM-DD, YYYY-MM or YYYY)";
  }
}

}  // namespace spx::console
