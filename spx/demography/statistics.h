#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include "spx/support/basic_stat.h"
#include "spx/support/data_range.h"
#include "spx/support/export.h"

/// The statistics that several results need. All intervals are of 95 percent.
namespace spx {

/// The normal deviate of intervals of 95 percent.
inline constexpr double NORMAL_95 = 1.959963984540054;

/// The value of a result that cannot be computed.
inline constexpr double NOT_KNOWN = std::numeric_limits<double>::quiet_NaN();

/// The interval of a share (Wilson 1927): it stays within 0 and 1, and is right for few animals.
/// @param successes  may be a fraction, where animals are shared between the sexes
/// @return NaN for a total of 0
SPX_EXPORT qs_lib::DataRange<double> wilsonInterval(double successes, double total);

/// The chance that a chi-square variable with `degrees` degrees of freedom is at least the value:
/// the upper regularised incomplete gamma function.
SPX_EXPORT double chiSquareTail(double value, std::size_t degrees);

/// A quantile of sorted values by linear interpolation (Hyndman & Fan 1996, type 7); NaN for none.
SPX_EXPORT double quantileOf(const std::vector<double>& sorted, double share);

/// Size, mean, extremes, quartiles, variance and standard error of values; sorts them. The
/// confidence interval is that of the mean by the normal deviate.
SPX_EXPORT qs_lib::basic_stat describe(std::vector<double> values);

}  // namespace spx
