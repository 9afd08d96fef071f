#include "spx/demography/statistics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace spx {
namespace {

constexpr int MOST_TERMS = 10000;
constexpr double PRECISION = 1e-16;

// The lower incomplete gamma function by its series, for x below a + 1.
double lowerBySeries(double a, double x) {
  double term = 1 / a;
  double sum = term;
  for (int n = 1; n < MOST_TERMS && std::abs(term) > std::abs(sum) * PRECISION; ++n) {
    term *= x / (a + n);
    sum += term;
  }
  return sum * std::exp(-x + a * std::log(x) - std::lgamma(a));
}

// The upper one by its continued fraction (Lentz's method).
double upperByFraction(double a, double x) {
  constexpr double TINY = 1e-300;
  double b = x + 1 - a;
  double c = 1 / TINY;
  double d = 1 / b;
  double value = d;
  for (int n = 1; n < MOST_TERMS; ++n) {
    const double an = -n * (n - a);
    b += 2;
    d = an * d + b;
    if (std::abs(d) < TINY) d = TINY;
    c = b + an / c;
    if (std::abs(c) < TINY) c = TINY;
    d = 1 / d;
    value *= d * c;
    if (std::abs(d * c - 1) < PRECISION) break;
  }
  return value * std::exp(-x + a * std::log(x) - std::lgamma(a));
}

}  // namespace

qs_lib::DataRange<double> wilsonInterval(double successes, double total) {
  if (!(total > 0)) return {NOT_KNOWN, NOT_KNOWN};
  const double z2 = NORMAL_95 * NORMAL_95;
  const double share = std::clamp(successes / total, 0.0, 1.0);
  const double middle = (share + z2 / (2 * total)) / (1 + z2 / total);
  const double half = NORMAL_95 / (1 + z2 / total) * std::sqrt(share * (1 - share) / total + z2 / (4 * total * total));
  return {share == 0 ? 0 : middle - half, share == 1 ? 1 : middle + half};
}

double chiSquareTail(double value, std::size_t degrees) {
  if (std::isnan(value) || degrees == 0) return NOT_KNOWN;
  if (value <= 0) return 1;
  const double a = static_cast<double>(degrees) / 2;
  const double x = value / 2;
  return x < a + 1 ? 1 - lowerBySeries(a, x) : upperByFraction(a, x);
}

double quantileOf(const std::vector<double>& sorted, double share) {
  if (sorted.empty()) return NOT_KNOWN;
  const double at = share * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(at);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (at - static_cast<double>(below)) * (sorted[above] - sorted[below]);
}

qs_lib::basic_stat describe(std::vector<double> values) {
  qs_lib::basic_stat result;
  result.sample_size = values.size();
  if (values.empty()) return result;
  std::sort(values.begin(), values.end());
  const auto n = static_cast<double>(values.size());
  result.minimum = values.front();
  result.maximum = values.back();
  result.mean = std::accumulate(values.begin(), values.end(), 0.0) / n;
  result.median = quantileOf(values, 0.5);
  result.percentile_25 = quantileOf(values, 0.25);
  result.percentile_75 = quantileOf(values, 0.75);
  if (values.size() < 2) return result;
  double squares = 0;
  for (const double value : values) squares += (value - result.mean) * (value - result.mean);
  result.sample_variance = squares / (n - 1);
  result.standard_error = std::sqrt(result.sample_variance / n);
  result.significance_level = 0.05;
  result.confidence_interval = {result.mean - NORMAL_95 * result.standard_error,
                                result.mean + NORMAL_95 * result.standard_error};
  return result;
}

}  // namespace spx
