#include "spx/support/text.h"

#include <algorithm>
#include <limits>
#include <locale.h>
#include <stdexcept>
#include <string_view>

namespace qs_lib {
namespace {
constexpr std::string_view BLANKS = " \t\r\n\v\f";

/// Sets the classic locale for the calling thread, so that "." is the decimal point in every host.
class ClassicLocale {
 public:
  ClassicLocale() : old_locale_(uselocale(classic())) {}
  ClassicLocale(const ClassicLocale&) = delete;
  ClassicLocale& operator=(const ClassicLocale&) = delete;
  ~ClassicLocale() { uselocale(old_locale_); }

 private:
  static locale_t classic() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
  }

  locale_t old_locale_;
};

char lowerCase(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}
}  // namespace

double String::real() const {
  const ClassicLocale classic;
  try {
    return std::stod(*this);
  } catch (const std::invalid_argument&) {
    return std::numeric_limits<double>::quiet_NaN();
  }
}

std::string replicateChar(char character, std::size_t count) {
  return std::string(count, character);
}

std::string replaceChar(std::string text, char old_character, char new_character) {
  std::replace(text.begin(), text.end(), old_character, new_character);
  return text;
}

std::string allTrim(const std::string& text) {
  const std::size_t first = text.find_first_not_of(BLANKS);
  if (first == std::string::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

bool stringToBool(const std::string& text) {
  std::string word = allTrim(text);
  std::transform(word.begin(), word.end(), word.begin(), lowerCase);
  constexpr std::string_view TRUE_WORDS[] = {"true", "t", "yes", "y", "1", "on"};
  return std::find(std::begin(TRUE_WORDS), std::end(TRUE_WORDS), word) != std::end(TRUE_WORDS);
}
}  // namespace qs_lib
