#include "spx/demography/kaplan_meier.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace spx {
namespace {

// Half of what double precision keeps: two curves that should meet do so within it.
constexpr double TOLERANCE = 1.5e-8;

bool isWatched(const observed_time& one) {
  return one.entry < one.exit;
}

struct ordered_times {
  std::vector<double> entries;
  std::vector<const observed_time*> exits;
};

ordered_times inOrder(std::span<const observed_time> times) {
  ordered_times ordered;
  for (const observed_time& one : times) {
    if (!isWatched(one)) continue;
    ordered.entries.push_back(one.entry);
    ordered.exits.push_back(&one);
  }
  std::sort(ordered.entries.begin(), ordered.entries.end());
  std::sort(ordered.exits.begin(), ordered.exits.end(),
            [](const observed_time* a, const observed_time* b) { return a->exit < b->exit; });
  return ordered;
}

// The log-log interval; `hazard_variance` is Greenwood's sum.
void setInterval(survival_step& step, double hazard_variance) {
  if (step.survival <= 0) {
    step.std_error = NOT_KNOWN;
    return;
  }
  const double error = std::sqrt(hazard_variance);
  step.std_error = step.survival * error;
  if (step.survival >= 1) return;
  const double log_survival = std::log(step.survival);
  const double middle = std::log(-log_survival);
  const double half = NORMAL_95 * error / log_survival;
  step.lower = std::exp(-std::exp(middle - half));
  step.upper = std::exp(-std::exp(middle + half));
}

// The first time at which a curve is down to one half.
double timeOfHalf(const std::vector<survival_step>& steps, double survival_step::*curve) {
  const auto reached = std::find_if(steps.begin(), steps.end(),
                                    [curve](const survival_step& step) { return step.*curve < 0.5 + TOLERANCE; });
  if (reached == steps.end()) return NOT_KNOWN;
  const double value = (*reached).*curve;
  if (std::abs(value - 0.5) >= TOLERANCE) return reached->time;
  const auto below =
      std::find_if(reached, steps.end(), [curve, value](const survival_step& step) { return step.*curve < value; });
  return below == steps.end() ? reached->time : (reached->time + below->time) / 2;
}

void setRestrictedMean(survival_curve& curve) {
  double area = 0;
  double variance = 0;
  // From the last step backwards: the variance of each death is weighted by the area under the curve to its right.
  for (std::size_t at = curve.steps.size(); at-- > 0;) {
    const survival_step& step = curve.steps[at];
    const double alive = step.at_risk - step.deaths;
    if (alive > 0) variance += area * area * step.deaths / (step.at_risk * alive);
    const double before = at == 0 ? 0 : curve.steps[at - 1].time;
    area += (step.time - before) * (at == 0 ? 1 : curve.steps[at - 1].survival);
  }
  curve.restricted_mean = area;
  curve.restricted_error = std::sqrt(variance);
}

}  // namespace

survival_curve kaplanMeier(std::span<const observed_time> times) {
  const ordered_times ordered = inOrder(times);
  survival_curve curve;
  curve.times = ordered.exits.size();
  double survival = 1;
  double hazard_variance = 0;
  std::size_t entered = 0;
  for (std::size_t at = 0; at < ordered.exits.size();) {
    survival_step step;
    step.time = ordered.exits[at]->exit;
    while (entered < ordered.entries.size() && ordered.entries[entered] < step.time) ++entered;
    step.at_risk = static_cast<double>(entered - at);
    for (; at < ordered.exits.size() && ordered.exits[at]->exit == step.time; ++at) {
      ++(ordered.exits[at]->died ? step.deaths : step.censored);
    }
    const double alive = step.at_risk - step.deaths;
    survival *= alive / step.at_risk;
    hazard_variance += step.deaths / (step.at_risk * alive);
    step.survival = survival;
    setInterval(step, hazard_variance);
    curve.deaths += static_cast<std::size_t>(step.deaths);
    curve.steps.push_back(step);
  }
  if (curve.steps.empty()) return curve;
  curve.median = timeOfHalf(curve.steps, &survival_step::survival);
  curve.median_lower = timeOfHalf(curve.steps, &survival_step::lower);
  curve.median_upper = timeOfHalf(curve.steps, &survival_step::upper);
  setRestrictedMean(curve);
  return curve;
}

survival_step stepAt(const survival_curve& curve, double time) {
  const auto after = std::upper_bound(curve.steps.begin(), curve.steps.end(), time,
                                      [](double value, const survival_step& step) { return value < step.time; });
  survival_step step = after == curve.steps.begin() ? survival_step() : *std::prev(after);
  const double last = curve.steps.empty() ? 0 : curve.steps.back().time;
  if (time > last && step.survival > 0) step.survival = step.std_error = step.lower = step.upper = NOT_KNOWN;
  return step;
}

namespace {

// Solves A x = b for a symmetric positive matrix by elimination; a row whose pivot vanishes depends
// on the others and is not counted in `rank`.
double quadraticForm(std::vector<double> matrix, std::vector<double> vector, std::size_t size, std::size_t& rank) {
  double form = 0;
  rank = 0;
  for (std::size_t pivot = 0; pivot < size; ++pivot) {
    const double at = matrix[pivot * size + pivot];
    if (!(at > TOLERANCE)) continue;
    ++rank;
    form += vector[pivot] * vector[pivot] / at;
    for (std::size_t row = pivot + 1; row < size; ++row) {
      const double factor = matrix[row * size + pivot] / at;
      vector[row] -= factor * vector[pivot];
      for (std::size_t column = pivot; column < size; ++column) {
        matrix[row * size + column] -= factor * matrix[pivot * size + column];
      }
    }
  }
  return form;
}

/// Sums of the test over the times of death.
class LogRank {
 public:
  explicit LogRank(std::size_t groups) : at_risk_(groups), deaths_(groups), covariance_(groups * groups) {
    result_.groups.resize(groups);
  }

  void enter(std::uint32_t group) { ++at_risk_[group]; }
  void leave(std::uint32_t group) { --at_risk_[group]; }
  void count(const observed_time& one) { ++result_.groups[one.group].times; }
  void die(std::uint32_t group) { ++deaths_[group]; }

  void endOfTime() {
    const double dead = std::accumulate(deaths_.begin(), deaths_.end(), 0.0);
    if (dead == 0) return;
    const double all = std::accumulate(at_risk_.begin(), at_risk_.end(), 0.0);
    const double spread = all > 1 ? dead * (all - dead) / (all * all * (all - 1)) : 0;
    const std::size_t groups = at_risk_.size();
    for (std::size_t a = 0; a < groups; ++a) {
      result_.groups[a].observed += deaths_[a];
      result_.groups[a].expected += dead * at_risk_[a] / all;
      covariance_[a * groups + a] += spread * at_risk_[a] * all;
      for (std::size_t b = 0; b < groups; ++b) {
        covariance_[a * groups + b] -= spread * at_risk_[a] * at_risk_[b];
      }
      deaths_[a] = 0;
    }
  }

  log_rank_result result() {
    const std::size_t groups = at_risk_.size();
    std::vector<double> differences;
    for (const log_rank_group& one : result_.groups) {
      differences.push_back(one.observed - one.expected);
    }
    const double form = quadraticForm(covariance_, differences, groups, result_.degrees);
    if (result_.degrees > 0) {
      result_.chi_square = form;
      result_.p = chiSquareTail(form, result_.degrees);
    }
    return std::move(result_);
  }

 private:
  std::vector<double> at_risk_;
  std::vector<double> deaths_;
  std::vector<double> covariance_;
  log_rank_result result_;
};

}  // namespace

log_rank_result logRankTest(std::span<const observed_time> times, std::size_t groups) {
  std::vector<const observed_time*> entries;
  for (const observed_time& one : times) {
    if (isWatched(one)) entries.push_back(&one);
  }
  std::vector<const observed_time*> exits = entries;
  std::sort(entries.begin(), entries.end(),
            [](const observed_time* a, const observed_time* b) { return a->entry < b->entry; });
  std::sort(exits.begin(), exits.end(),
            [](const observed_time* a, const observed_time* b) { return a->exit < b->exit; });
  LogRank sums(groups);
  std::size_t entered = 0;
  for (std::size_t at = 0; at < exits.size();) {
    const double time = exits[at]->exit;
    for (; entered < entries.size() && entries[entered]->entry < time; ++entered) {
      sums.enter(entries[entered]->group);
    }
    const std::size_t first = at;
    for (; at < exits.size() && exits[at]->exit == time; ++at) {
      sums.count(*exits[at]);
      if (exits[at]->died) sums.die(exits[at]->group);
    }
    sums.endOfTime();
    for (std::size_t gone = first; gone < at; ++gone) sums.leave(exits[gone]->group);
  }
  return sums.result();
}

}  // namespace spx
