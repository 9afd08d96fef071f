#include "console/project/life_history.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "spx/project/biology.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/tables/enum_names.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr char DAYS[] = "DAYS";

double days(const std::string& name, const std::string& value) {
  const auto number = parseReal<double>(value);
  if (!number || !(*number >= 0)) {
    throw UsageError(name + ": " + quotedText(value) + " must be a number of days of at least 0");
  }
  return *number;
}

int wholeNumber(const std::string& name, const std::string& value) {
  int number = 0;
  const char* end = value.data() + value.size();
  const auto result = std::from_chars(value.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end || number < 0) {
    throw UsageError(name + ": " + quotedText(value) + " must be a whole number of at least 0");
  }
  return number;
}

template <class Enumeration>
Enumeration choice(const std::string& name, const std::string& value) {
  if (const auto chosen = parseName<Enumeration>(value)) {
    return *chosen;
  }
  throw UsageError(name + ": " + quotedText(value) + " must be one of: " + joinedWords(typedNames<Enumeration>()));
}

using range = qs_lib::DataRange<double>;

/// The range with one bound replaced.
range withBound(range both, bool lower, double value) {
  (lower ? both.lower : both.upper) = value;
  return both;
}

void setAges(SEX sex, bool lower, double value) {
  LifeHistory.setReproductiveAge(sex, withBound(LifeHistory.getReproductiveAge(sex), lower, value));
}

void setKey(const std::string& key, const std::string& name, const std::string& value) {
  const auto is = [&key](const char* other) { return key == other; };
  if (is("LATIN_NAME")) {
    return LifeHistory.setLatinName(value);
  }
  if (is("COMMON_NAME")) {
    return LifeHistory.setCommonName(value);
  }
  if (is("REPRODUCTIVE_SYSTEM")) {
    return LifeHistory.setReproductiveSystem(choice<REPRODUCTIVE_SYSTEM>(name, value));
  }
  if (is("REPRODUCTIVE_SEASON")) {
    return LifeHistory.setReproductiveSeason(choice<REPRODUCTIVE_SEASON>(name, value));
  }
  if (is("MAX_LITTER_SIZE")) {
    return LifeHistory.setMaxLitterSize(wholeNumber(name, value));
  }
  const double number = days(name, value);
  if (is("GESTATION")) {
    return LifeHistory.setGestation(number);
  }
  if (is("DEN_EMERGE")) {
    return LifeHistory.setDenEmerge(number);
  }
  if (is("IMPLANTATION")) {
    return LifeHistory.setImplantation(number);
  }
  if (is("BIRTHDATE_RANGE")) {
    return LifeHistory.setBirthDateRange(number);
  }
  if (is("NEONATAL_AGE")) {
    return LifeHistory.setNeonatalAge(number);
  }
  if (is("MAX_MALE_LONGEVITY")) {
    return LifeHistory.setLongevity(SEX::MALE, number);
  }
  if (is("MAX_FEMALE_LONGEVITY")) {
    return LifeHistory.setLongevity(SEX::FEMALE, number);
  }
  const bool lower = key.ends_with("_LOWER");
  if (key.starts_with("MALE_")) {
    return setAges(SEX::MALE, lower, number);
  }
  if (key.starts_with("FEMALE_")) {
    return setAges(SEX::FEMALE, lower, number);
  }
  LifeHistory.setBirthInterval(withBound(LifeHistory.getBirthInterval(), lower, number));
}

double numberOf(const qs_lib::String& text) {
  try {
    return text.real();
  } catch (const std::out_of_range&) {
    return std::numeric_limits<double>::quiet_NaN();
  }
}

bool lacksAges(SEX sex) {
  const range ages = LifeHistory.getReproductiveAge(sex);
  return !(ages.lower <= ages.upper);
}

}  // namespace

const std::vector<life_history_setting>& lifeHistorySettings() {
  static const std::vector<life_history_setting> settings = {
      {"LATIN_NAME", "TEXT"},
      {"COMMON_NAME", "TEXT"},
      {"REPRODUCTIVE_SYSTEM", joinedWords(typedNames<REPRODUCTIVE_SYSTEM>(), "|")},
      {"REPRODUCTIVE_SEASON", joinedWords(typedNames<REPRODUCTIVE_SEASON>(), "|")},
      {"GESTATION", DAYS},
      {"DEN_EMERGE", DAYS},
      {"IMPLANTATION", DAYS},
      {"BIRTH_INTERVAL_LOWER", DAYS},
      {"BIRTH_INTERVAL_UPPER", DAYS},
      {"BIRTHDATE_RANGE", DAYS},
      {"MAX_LITTER_SIZE", "COUNT"},
      {"MALE_REPRODUCTIVE_LOWER", DAYS},
      {"MALE_REPRODUCTIVE_UPPER", DAYS},
      {"FEMALE_REPRODUCTIVE_LOWER", DAYS},
      {"FEMALE_REPRODUCTIVE_UPPER", DAYS},
      {"MAX_MALE_LONGEVITY", DAYS},
      {"MAX_FEMALE_LONGEVITY", DAYS},
      {"NEONATAL_AGE", DAYS},
  };
  return settings;
}

std::string typedName(const std::string& key) {
  return typedWord(key);
}

void setLifeHistory(const std::string& name, const std::string& value) {
  std::vector<std::string> names;
  for (const life_history_setting& setting : lifeHistorySettings()) {
    if (isSameWord(name, setting.key)) {
      return setKey(setting.key, name, value);
    }
    names.push_back(typedName(setting.key));
  }
  throw UsageError("there is no life-history parameter " + quotedText(name) + suggestion(name, names));
}

void checkReproductiveAges() {
  const Biology unset;
  const double latest = unset.getReproductiveAge(SEX::MALE).lower;  // stands for a lower age that is not set
  const auto check = [latest](const char* what, const range& ages) {
    if (ages.upper > 0 && ages.lower != latest && ages.lower > ages.upper) {
      throw UsageError(std::string(what) + "-lower is above " + what + "-upper");
    }
  };
  check("male-reproductive", LifeHistory.getReproductiveAge(SEX::MALE));
  check("female-reproductive", LifeHistory.getReproductiveAge(SEX::FEMALE));
}

bool lacksReproductiveAges() {
  return lacksAges(SEX::MALE) && lacksAges(SEX::FEMALE);
}

void checkLifeHistory(const Biology& parameters) {
  for (const auto& [key, entry] : parameters.entries()) {
    if ((entry.type == "REAL" || entry.type == "DOUBLE") && std::isnan(numberOf(entry.value))) {
      throw Failure(parameters.getFileName() + ": " + key + ": " + quotedText(entry.value) + " is not a number");
    }
  }
}

}  // namespace spx::console
