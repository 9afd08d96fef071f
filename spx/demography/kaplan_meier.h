#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "spx/demography/statistics.h"
#include "spx/support/export.h"

/// Survival curves from times under observation: vectors in, tables out.
namespace spx {

/// An interval during which an animal was watched. It is at risk at every time t with entry < t <= exit.
struct observed_time {
  double entry = 0;         ///< age at the start, in any unit
  double exit = 0;          ///< age at the end, above entry
  bool died = false;        ///< whether it died at the exit; otherwise it is censored there
  std::uint32_t group = 0;  ///< which group it belongs to
  std::size_t animal = 0;   ///< the animal; not used by the curves
};

/// One time at which animals died or were last seen.
struct survival_step {
  double time = 0;           ///< in the unit of the observed times
  double at_risk = 0;        ///< animals at risk at that time
  double deaths = 0;         ///< of them
  double censored = 0;       ///< last seen alive at that time
  double survival = 1;       ///< share that lives longer
  double std_error = 0;      ///< of the survival; NaN when nobody survives
  double lower = NOT_KNOWN;  ///< interval of 95 percent; NaN while all survive and when nobody does
  double upper = NOT_KNOWN;  ///< likewise
};

/// A survival curve: survival is 1 before the first step and stays at its value between two.
struct survival_curve {
  std::vector<survival_step> steps;     ///< in order of time
  std::size_t times = 0;                ///< observed times that went in
  std::size_t deaths = 0;               ///< of them
  double median = NOT_KNOWN;            ///< NaN: more than half survive
  double median_lower = NOT_KNOWN;      ///< where the lower curve reaches one half
  double median_upper = NOT_KNOWN;      ///< where the upper one does; NaN: unknown
  double restricted_mean = NOT_KNOWN;   ///< mean time lived up to the last step
  double restricted_error = NOT_KNOWN;  ///< its standard error
};

/// The product-limit estimate (Kaplan & Meier 1958), with delayed entry (Tsai, Jewell & Wang 1987),
/// Greenwood's variance (Greenwood 1926) and log-log intervals (Kalbfleisch & Prentice 1980), which
/// stay within 0 and 1. Where the curve is exactly one half the median is the middle of that step.
/// Times with entry >= exit are never at risk and count for nothing. Sorts: n log n.
SPX_EXPORT survival_curve kaplanMeier(std::span<const observed_time> times);

/// The curve at a time: the last step up to it; before the first one a step at time 0 with survival 1. Beyond the last
/// step nobody was watched: survival is NaN there, except for a curve that has reached 0.
SPX_EXPORT survival_step stepAt(const survival_curve& curve, double time);

/// One group of a log-rank test.
struct log_rank_group {
  std::size_t times = 0;  ///< observed times
  double observed = 0;    ///< deaths
  double expected = 0;    ///< deaths if all groups had the same risk
};

/// Whether groups differ in survival.
struct log_rank_result {
  std::vector<log_rank_group> groups;
  double chi_square = NOT_KNOWN;  ///< NaN when nothing can be compared
  std::size_t degrees = 0;        ///< groups at risk less one
  double p = NOT_KNOWN;           ///< chance of such a difference among equal groups
};

/// The log-rank test (Mantel 1966) with delayed entry and the hypergeometric variance. Groups that
/// are never at risk when an animal dies take no part.
/// @param groups  how many there are; observed_time::group is below it
SPX_EXPORT log_rank_result logRankTest(std::span<const observed_time> times, std::size_t groups);

}  // namespace spx
