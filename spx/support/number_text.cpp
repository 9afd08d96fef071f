#include "spx/support/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace qs_lib {
namespace {
constexpr int DEFAULT_DECIMALS = 6;

// Room for the sign, the digits of the largest double and the point.
constexpr std::size_t LONGEST_WHOLE = std::numeric_limits<double>::max_exponent10 + 4;
constexpr std::size_t USUAL_DECIMALS = 30;

void appendFixed(std::string& text, double value, int decimals) {
  std::array<char, LONGEST_WHOLE + USUAL_DECIMALS> digits;
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
  if (error == std::errc{}) {
    text.append(digits.data(), end);
    return;
  }
  // A double has less than 1100 decimals; zeros follow.
  constexpr int MOST_DECIMALS = 1100;
  std::string many(LONGEST_WHOLE + MOST_DECIMALS, '\0');
  const int written = decimals < MOST_DECIMALS ? decimals : MOST_DECIMALS;
  many.resize(static_cast<std::size_t>(
      std::to_chars(many.data(), many.data() + many.size(), value, std::chars_format::fixed, written).ptr -
      many.data()));
  text.append(many).append(static_cast<std::size_t>(decimals - written), '0');
}
}  // namespace

void appendReal(std::string& text, double value, int decimals) {
  if (std::isnan(value)) {
    text += "nan";
  } else if (std::isinf(value)) {
    text += value < 0 ? "-inf" : "inf";
  } else {
    appendFixed(text, value, decimals < 0 ? DEFAULT_DECIMALS : decimals);
  }
}

void appendWhole(std::string& text, int value) {
  std::array<char, std::numeric_limits<int>::digits10 + 2> digits;
  text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

template <typename T>
std::string realToString(T value, int decimals) {
  std::string text;
  appendReal(text, static_cast<double>(value), decimals);
  return text;
}

template std::string realToString<float>(float value, int decimals);
template std::string realToString<double>(double value, int decimals);

std::string defaultReal(double value) {
  if (!std::isfinite(value)) {
    return realToString(value, 0);
  }
  std::array<char, 32> digits;
  const auto result =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general, DEFAULT_DECIMALS);
  return {digits.data(), result.ptr};
}

std::string percentString(double part, double whole, int decimals) {
  return whole == 0 ? "n/a" : realToString(part / whole * 100, decimals) + "%";
}
}  // namespace qs_lib
