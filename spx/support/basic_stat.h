#pragma once

#include <cstdint>
#include <limits>

#include "spx/support/data_range.h"

namespace qs_lib {
/// The descriptive statistics of one variable. A value that was not computed is NaN.
struct basic_stat {
  static constexpr double UNSET = std::numeric_limits<double>::quiet_NaN();  ///< NaN: not computed

  std::uint64_t sample_size = 0;                        ///< values that were counted
  double minimum = UNSET;                               ///< the smallest value
  double maximum = UNSET;                               ///< the largest value
  double mean = UNSET;                                  ///< arithmetic
  double median = UNSET;                                ///< the 50th percentile
  double percentile_25 = UNSET;                         ///< the lower quartile
  double percentile_75 = UNSET;                         ///< the upper quartile
  double sample_variance = UNSET;                       ///< of the sample
  double standard_error = UNSET;                        ///< of the mean
  double significance_level = UNSET;                    ///< a fraction: 0.05 for an interval of 95 percent
  DataRange<double> confidence_interval{UNSET, UNSET};  ///< of the mean
};
}  // namespace qs_lib
