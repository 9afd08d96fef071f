#include "spx/reports/view_labels.h"

#include <cmath>

#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

namespace spx {

std::string truthText(bool value) {
  return value ? "true" : "false";
}

std::vector<labelled_text> viewBounds(const std::string& upper_age) {
  std::vector<labelled_text> bounds;
  const auto add = [&bounds](bool is_set, const std::string& label, double bound, int decimals) {
    if (is_set) {
      bounds.push_back({label, qs_lib::realToString(bound, decimals)});
    }
  };
  add(!std::isnan(View.low_inbreeding), "Lower inbreeding coefficient", View.low_inbreeding, 4);
  add(!std::isnan(View.high_inbreeding), "Upper inbreeding coefficient", View.high_inbreeding, 4);
  add(View.low_generation >= 0, "Lower generation number", View.low_generation, 6);
  add(View.high_generation >= 0, "Upper generation number", View.high_generation, 6);
  add(!std::isnan(View.low_age), "Lower age", View.low_age, 6);
  add(!std::isnan(View.high_age), upper_age, View.high_age, 6);
  return bounds;
}

}  // namespace spx
