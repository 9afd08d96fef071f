#pragma once

#include <string_view>

namespace spx::console {

/// Compares texts as people sort them: runs of digits by their number ("2" before "10", "A9" before "A10"), letters
/// without regard to case. Texts that are equal in this order are compared byte by byte, so that only
/// identical texts give 0.
/// @return below 0, 0 or above 0
int compareNaturally(std::string_view a, std::string_view b);

/// An ordering for sets and maps by compareNaturally().
struct natural_less {
  bool operator()(std::string_view a, std::string_view b) const { return compareNaturally(a, b) < 0; }
};

}  // namespace spx::console
