#pragma once

#include <cstdint>
#include <limits>

#include "spx/support/data_range.h"

namespace qs_lib {
/// The descriptive statistics of one variable. A value that was not computed is NaN.
struct basic_stat {
  static constexpr double UNSET = std::numeric_limits<double>::quiet_NaN();

  std::uint64_t sample_size = 0;
  double minimum = UNSET;
  double maximum = UNSET;
  double mean = UNSET;
  double median = UNSET;
  double percentile_25 = UNSET;
  double percentile_75 = UNSET;
  double sample_variance = UNSET;
  double standard_error = UNSET;      ///< of the mean
  double significance_level = UNSET;  ///< a fraction: 0.05 for an interval of 95 percent
  DataRange<double> confidence_interval{UNSET, UNSET};  ///< of the mean
};
}  // namespace qs_lib
