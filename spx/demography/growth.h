#pragma once

#include <cstdint>
#include <vector>

#include "spx/demography/life_table.h"
#include "spx/demography/statistics.h"
#include "spx/support/data_range.h"
#include "spx/support/export.h"

/// What a life table says about growth.
namespace spx {

/// The age at which the parents of a class are taken to have their young.
enum class PARENT_AGE : std::uint8_t {
  MIDDLE,  ///< in the middle of the class, among those who live then
  START    ///< at its start, among those who reach it
};

/// The growth that a life table leads to when its rates stay as they are. Times are in days.
struct growth_rates {
  double r0 = NOT_KNOWN;                   ///< offspring of its own sex that a newborn will have
  double generation_time = NOT_KNOWN;      ///< mean age of parents over a cohort's life
  double stable_generation = NOT_KNOWN;    ///< mean age of parents in the stable population
  double r = NOT_KNOWN;                    ///< intrinsic rate of increase per day
  double lambda = NOT_KNOWN;               ///< growth factor per year, exp(365.25 r)
  std::vector<double> stable_age;          ///< share of each class in the stable population
  std::vector<double> reproductive_value;  ///< of an animal at the start of each class; a newborn has 1
};

/// R0 = sum w (Lotka 1939), T = sum a w / R0, r from Euler's equation sum w exp(-r a) = 1 (Euler
/// 1760; Lotka 1907) solved to 1e-12 per year, lambda = exp(r); the stable population's T weighs the
/// ages by exp(-r a). w is what a newborn can expect to bear in a class: L m by the middle of the
/// classes, l m by their starts; a is that age. c = exp(-r (age + width/2)) L over its sum;
/// V = exp(r age) / l times the sum of w exp(-r a) from the class on (Fisher 1930). Without any
/// offspring R0 is 0 and the rest is NaN; an empty table has NaN only.
SPX_EXPORT growth_rates growthRates(const std::vector<life_table_row>& table, PARENT_AGE parents);

/// Intervals of 95 percent from random samples, in the units of growth_rates.
struct growth_intervals {
  qs_lib::DataRange<double> r0{NOT_KNOWN, NOT_KNOWN};
  qs_lib::DataRange<double> generation_time{NOT_KNOWN, NOT_KNOWN};
  qs_lib::DataRange<double> r{NOT_KNOWN, NOT_KNOWN};
  qs_lib::DataRange<double> lambda{NOT_KNOWN, NOT_KNOWN};
  std::size_t runs = 0;    ///< runs that gave a growth rate
  std::size_t failed = 0;  ///< runs without offspring
};

/// The bootstrap (Efron 1979) over animals: as many as there are, drawn with replacement; the
/// interval holds the middle 95 percent of the runs. `data` has the animals divided into samples:
/// with at least as many samples as animals they are drawn one by one, otherwise sample by sample,
/// which estimates the same spread. Equal seeds give equal results.
/// @param sex   females or males; ALL for both together
SPX_EXPORT growth_intervals bootstrapGrowth(const life_tallies& data, SEX sex, bool same_sex, PARENT_AGE parents,
                                            std::size_t runs, std::uint32_t seed);

}  // namespace spx
