#include "console/base/natural_order.h"

#include <algorithm>
#include <cstddef>

namespace spx::console {
namespace {

bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

unsigned char lowered(char letter) {
  return static_cast<unsigned char>(letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter);
}

/// Takes the run of digits from the beginning of a text, without leading zeros.
std::string_view takeNumber(std::string_view& text) {
  const std::size_t end = std::min(
      text.size(), static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin()));
  std::string_view digits = text.substr(0, end);
  text.remove_prefix(end);
  digits.remove_prefix(std::min(digits.size(), digits.find_first_not_of('0')));
  return digits;
}

int compareNumbers(std::string_view a, std::string_view b) {
  return a.size() != b.size() ? (a.size() < b.size() ? -1 : 1) : a.compare(b);
}

}  // namespace

int compareNaturally(std::string_view a, std::string_view b) {
  std::string_view left = a;
  std::string_view right = b;
  while (!left.empty() && !right.empty()) {
    if (isDigit(left.front()) && isDigit(right.front())) {
      if (const int order = compareNumbers(takeNumber(left), takeNumber(right)); order != 0) {
        return order;
      }
      continue;
    }
    if (lowered(left.front()) != lowered(right.front())) {
      return lowered(left.front()) < lowered(right.front()) ? -1 : 1;
    }
    left.remove_prefix(1);
    right.remove_prefix(1);
  }
  if (left.empty() != right.empty()) {
    return left.empty() ? -1 : 1;
  }
  return a.compare(b);
}

}  // namespace spx::console
