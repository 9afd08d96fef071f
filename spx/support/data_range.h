#pragma once

#include <string_view>

namespace qs_lib {
/// A pair of bounds. The brackets given to isInRange() decide whether the bounds belong to it.
template <typename T>
struct DataRange {
  T lower{};  ///< the lower bound
  T upper{};  ///< the upper bound

  /// Whether the value lies between the bounds.
  /// @param bracket  "()", "(]", "[)" or "[]": a square bracket includes the bound; with any other
  ///                 text nothing is in range
  bool isInRange(const T& value, std::string_view bracket) const {
    if (bracket.size() != 2) {
      return false;
    }
    const bool above = bracket[0] == '[' ? lower <= value : bracket[0] == '(' ? lower < value : false;
    const bool below = bracket[1] == ']' ? value <= upper : bracket[1] == ')' ? value < upper : false;
    return above && below;
  }
};
}  // namespace qs_lib
