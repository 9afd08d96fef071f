#pragma once

#include <string>
#include <vector>

namespace spx {

/// A setting of the view, as reports show it.
struct labelled_text {
  std::string label;
  std::string text;
};

/// "true" or "false".
std::string truthText(bool value);

/// The bounds of the active view that are set, in the order of the reports: inbreeding (4 decimals,
/// unset when NaN), generation (6 decimals, set from 0 up) and age (6 decimals, unset when NaN).
/// @param upper_age  the label of the upper age, in which the reports differ
std::vector<labelled_text> viewBounds(const std::string& upper_age);

}  // namespace spx
