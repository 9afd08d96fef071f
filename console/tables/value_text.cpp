#include "console/tables/value_text.h"

#include <algorithm>
#include <iterator>

#include "console/tables/date_reading.h"
#include "console/tables/enum_names.h"
#include "console/tables/folded_text.h"

namespace spx::console {
namespace {

bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

/// The value with that display name, among those that a record can have.
template <typename Enum>
std::optional<Enum> parseUpTo(std::string_view text, Enum last) {
  const auto value = parseName<Enum>(text);
  return value && *value <= last ? value : std::nullopt;
}

std::optional<SEX> parseSexLetter(char letter) {
  switch (letter) {
    case 'm':
    case 'M':
    case '1':
      return SEX::MALE;
    case 'f':
    case 'F':
    case '2':
      return SEX::FEMALE;
    case 'h':
    case 'H':
      return SEX::HERMAPHRODITE;
    case 'u':
    case 'U':
    case '0':
      return SEX::UNKNOWN;
    default:
      return std::nullopt;
  }
}

template <typename Number>
bool isNumber(std::string_view text) {
  Number number = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

bool hasLeadingZero(std::string_view text) {
  if (!text.empty() && text.front() == '-') {
    text.remove_prefix(1);
  }
  return text.size() > 1 && text[0] == '0' && isDigit(text[1]);
}

/// A plain date, with or without "~" before it.
dated_text datedText(std::string_view text) {
  constexpr std::size_t YEAR = 4;
  constexpr std::size_t YEAR_AND_MONTH = 7;
  const bool is_rough = text.starts_with('~');
  text.remove_prefix(is_rough ? 1 : 0);
  const auto day = qs_lib::msToDay(qs_lib::dateToJulian(std::string(text)));
  const auto accuracy = text.size() == YEAR             ? DATE_ACCURACY::BY_YEAR
                        : text.size() == YEAR_AND_MONTH ? DATE_ACCURACY::BY_MONTH
                        : is_rough                      ? DATE_ACCURACY::BY_DAY
                                                        : DATE_ACCURACY::ACCURATE;
  return {day, accuracy};
}

/// "1990s": its middle, with the range to either side.
dated_text decade(const std::string& text) {
  constexpr int HALF = 5;
  constexpr std::uint64_t DAYS = 1826;
  const std::string middle = std::to_string(std::stoi(text) + HALF);
  return {qs_lib::msToDay(qs_lib::dateToJulian(middle)), DATE_ACCURACY::DATE_RANGE, DAYS};
}

/// Words for sexes other than the display names.
std::optional<SEX> parseSexWord(std::string_view text) {
  // Folded, between blanks.
  static constexpr std::string_view MALE =
      " 1.0 1,0 1.0.0 \xE2\x99\x82 mannlich maennlich mannchen maennchen male masculin macho masculino ";
  static constexpr std::string_view FEMALE =
      " 0.1 0,1 0.1.0 \xE2\x99\x80 w weiblich weibchen fem femelle feminin hembra femenino ";
  static constexpr std::string_view UNKNOWN =
      " 0.0.1 0,0,1 ? - unk unbekannt unbest unbestimmt inconnu indetermine indet desconocido indeterminado unsexed ";
  constexpr std::size_t LONGEST = 20;
  if (text.empty() || text.size() > LONGEST || text.find(' ') != std::string_view::npos) {
    return std::nullopt;
  }
  std::string word = foldedText(text);
  if (word.size() > 1 && word.ends_with('.')) {
    word.pop_back();
  }
  word = " " + word + " ";
  const auto is_in = [&](std::string_view words) { return words.find(word) != std::string_view::npos; };
  if (is_in(MALE)) {
    return SEX::MALE;
  }
  if (is_in(FEMALE)) {
    return SEX::FEMALE;
  }
  return is_in(UNKNOWN) ? std::optional(SEX::UNKNOWN) : std::nullopt;
}

}  // namespace

std::optional<bool> parseTruth(std::string_view text) {
  const auto is_word = [text](const char* word) { return isSameWord(text, word); };
  constexpr const char* YES[] = {"true", "t", "yes", "y", "1", "on"};
  constexpr const char* NO[] = {"false", "f", "no", "n", "0", "off"};
  if (std::any_of(std::begin(YES), std::end(YES), is_word)) {
    return true;
  }
  return std::any_of(std::begin(NO), std::end(NO), is_word) ? std::optional(false) : std::nullopt;
}

bool isMissing(std::string_view text) {
  constexpr std::size_t LONGEST_CODE = 3;
  return text.empty() ||
         (text.size() <= LONGEST_CODE && (text == "." || isSameWord(text, "NA") || isSameWord(text, "N/A")));
}

bool isUnknown(std::string_view text) {
  return isMissing(text) || isSameWord(text, "unknown");
}

bool isUnknownId(std::string_view text) {
  return text == "0" || text == "?" || isUnknown(text);
}

std::optional<SEX> parseSex(std::string_view text) {
  if (isUnknown(text)) {
    return SEX::UNKNOWN;
  }
  const std::optional<SEX> sex = text.size() == 1 ? parseSexLetter(text[0]) : parseUpTo(text, SEX::UNKNOWN);
  return sex ? sex : parseSexWord(text);
}

qs_lib::day_number lastDayOf(const dated_text& date) {
  qs_lib::civil_date day = qs_lib::civilFromDay(date.day);
  if (date.accuracy == DATE_ACCURACY::BY_YEAR) {
    day.month = 12;
  }
  if (date.accuracy == DATE_ACCURACY::BY_YEAR || date.accuracy == DATE_ACCURACY::BY_MONTH) {
    day.day = qs_lib::daysInMonth(day.year, day.month);
  }
  return qs_lib::dayFromCivil(day).value_or(date.day);
}

std::optional<dated_text> parseDate(std::string_view text) {
  if (isUnknown(text)) {
    return dated_text{};
  }
  const date_reading reading = readDate(text, DATE_ORDER::UNKNOWN);
  if (reading.form >= DATE_FORM::AMBIGUOUS) {
    return std::nullopt;
  }
  if (reading.text.empty()) {
    return dated_text{};
  }
  return reading.form == DATE_FORM::DECADE ? decade(reading.text) : datedText(reading.text);
}

std::optional<DATE_ACCURACY> parseAccuracy(std::string_view text) {
  return parseUpTo(text, DATE_ACCURACY::UNKNOWN);
}

std::optional<MOVE_TYPE> parseMoveType(std::string_view text) {
  return parseUpTo(text, MOVE_TYPE::NO_EVENT);
}

std::optional<BIRTH_TYPE> parseOrigin(std::string_view text) {
  if (isUnknown(text)) {
    return BIRTH_TYPE::UNKNOWN;
  }
  if (isSameWord(text, "wild")) {
    return BIRTH_TYPE::WILD_BORN;
  }
  if (isSameWord(text, "captive")) {
    return BIRTH_TYPE::CAPTIVE_BORN;
  }
  return parseUpTo(text, BIRTH_TYPE::UNKNOWN);
}

std::optional<REARING> parseRearing(std::string_view text) {
  return isUnknown(text) ? REARING::UNKNOWN : parseUpTo(text, REARING::UNKNOWN);
}

std::optional<std::uint64_t> parseDays(std::string_view text) {
  if (isUnknown(text)) {
    return 0;
  }
  std::uint64_t days = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, days);
  if (result.ec != std::errc() || result.ptr != end) {
    return std::nullopt;
  }
  return days;
}

bool isDemeText(std::string_view text) {
  if (text.empty() || text.find_first_not_of("0123456789.") != std::string_view::npos) {
    return false;
  }
  return text.find('.') != std::string_view::npos || isNumber<std::uint8_t>(text);
}

std::string shortDemeText(const DemeID& deme) {
  std::string text;
  for (int level = 0; level <= deme.getLevel(); ++level) {
    text += (level == 0 ? "" : ".") + std::to_string(deme.blocks[static_cast<std::size_t>(level)]);
  }
  return text;
}

std::optional<DemeID> parseDeme(std::string_view text) {
  DemeID deme;
  for (std::size_t level = 0;; ++level) {
    const std::size_t dot = std::min(text.find('.'), text.size());
    const std::string_view block = text.substr(0, dot);
    if (level >= deme.blocks.size() || !isNumber<std::uint8_t>(block)) {
      return std::nullopt;
    }
    std::from_chars(block.data(), block.data() + block.size(), deme.blocks[level]);
    if (level > 0 && deme.blocks[level] != 0 && deme.blocks[level - 1] == 0) {
      return std::nullopt;
    }
    if (dot == text.size()) {
      break;
    }
    text.remove_prefix(dot + 1);
  }
  DemeID unpacked;
  unpacked.set(deme.binary());
  if (deme.getLevel() < 0 || unpacked.blocks != deme.blocks) {
    return std::nullopt;
  }
  return deme;
}

void TypeGuess::add(std::string_view value) {
  using qs_lib::FIELD_TYPE;
  if (isMissing(value) || type_ == FIELD_TYPE::TEXT) {
    return;
  }
  met_ = true;
  if (hasLeadingZero(value)) {
    type_ = FIELD_TYPE::TEXT;
  } else if (!isNumber<std::int64_t>(value)) {
    type_ = isNumber<double>(value) ? FIELD_TYPE::REAL : FIELD_TYPE::TEXT;
  }
}

}  // namespace spx::console
