#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "spx/demography/age_structure.h"
#include "spx/demography/life_table.h"
#include "spx/support/export.h"

/// The population in the years to come, if the rates of a life table stay as they are.
namespace spx {

/// The chances of animals from one step to the next; a step is as long as a class is wide. The
/// animals of the last class stay in it.
struct step_rates {
  std::vector<double> female_survival;  ///< by class
  std::vector<double> male_survival;    ///< by class
  std::vector<double> daughters;        ///< alive at the end of the step, by class of the dam
  std::vector<double> sons;             ///< likewise
};

/// The rates of a population whose births are spread over the year (birth-flow), by Leslie 1945 and
/// Caswell 2001: survival is L of the next class over L of the class, that of the last class its p;
/// daughters are sqrt(l1) (m + survival x next m) / 2, l1 being the survival of the first class. Sons
/// are counted by dams in the same way.
/// @param same_sex  as for the life table: false halves all offspring between daughters and sons
SPX_EXPORT step_rates stepRates(const life_tallies& data, bool same_sex);

/// The growth factor per step in the long run: the dominant eigenvalue of the females' Leslie
/// matrix. 0 when no female bears.
SPX_EXPORT double leslieLambda(const step_rates& rates);

/// Numbers of animals by class; fractions in expected numbers.
struct class_counts {
  std::vector<double> females;
  std::vector<double> males;
  SPX_EXPORT double total() const;
};

/// The numbers to start from: the animals of a day by class. Those of unknown age are shared over
/// the classes as the others are, per sex.
SPX_EXPORT class_counts startingNumbers(const age_structure& structure, std::size_t classes);

/// The expected numbers at the end of each step; the first entry is the start.
SPX_EXPORT std::vector<class_counts> projectExpected(const class_counts& start, const step_rates& rates,
                                                     std::size_t steps);

/// The spread of many runs at the end of one step.
struct projection_step {
  double mean = 0;                                                           ///< mean number of animals
  double lower = 0, quarter = 0, median = 0, three_quarters = 0, upper = 0;  ///< 2.5 to 97.5 percent
  double extinct = 0;  ///< share of the runs in which no animal is left, or one sex only
  double below = 0;    ///< share of the runs below chance_settings::fewer_than
};

/// The settings of projectChance().
struct chance_settings {
  std::size_t runs = 1000;
  std::uint32_t seed = 1;
  double fewer_than = 0;  ///< the limit of projection_step::below
};

/// Runs with chance for every animal: each lives on with the chance of its class, each dam bears a
/// Poisson number of young, each young is female with the chance that the rates imply. Fractions of
/// animals at the start are rounded by chance, so that a whole number of animals stays that number. A population
/// without males, or without females, has no births. The first entry is the start. Equal seeds give equal results.
/// Linear in runs, steps and classes.
SPX_EXPORT std::vector<projection_step> projectChance(const class_counts& start, const step_rates& rates,
                                                      std::size_t steps, const chance_settings& settings);

/// The number of births in a step that keeps a population at a size: the size divided by the life expectancy at birth,
/// in steps, averaged over both sexes by their share at birth. NaN without deaths.
SPX_EXPORT double birthsToKeep(double size, const life_tallies& data);

}  // namespace spx
