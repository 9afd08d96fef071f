#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "spx/core/enumerations.h"
#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

/// Generation intervals: the age of parents at the birth of the offspring that later breed themselves.
namespace spx {

/// The mean age of parents on one path from parent to offspring.
struct interval_path {
  double mean;            ///< in the unit of the birth dates; NaN without a birth
  double standard_error;  ///< NaN below two births
  std::size_t births;     ///< of offspring that have bred and whose parent's age is known
};

/// The four paths (Rendel & Robertson 1950; James 1977; Hill 1979).
struct generation_intervals {
  interval_path sire_son;
  interval_path sire_daughter;
  interval_path dam_son;
  interval_path dam_daughter;
  double mean;  ///< of the paths that have births; NaN when none has
};

/// Computes the intervals over all births of offspring that have bred themselves. Recent births are
/// underrepresented: most of those animals have not bred yet. A parent that is younger than its
/// offspring according to the dates counts with age 0.
/// @param births  by node, in any unit; NaN for an unknown date
/// @param sexes   by node; only males and females count as offspring
SPX_EXPORT generation_intervals generationIntervals(const GeneticPedigree& pedigree, std::span<const double> births,
                                                    std::span<const SEX> sexes);

/// The same over some offspring alone.
/// @param offspring  the offspring to count; those that have not bred are skipped
SPX_EXPORT generation_intervals generationIntervals(const GeneticPedigree& pedigree, std::span<const double> births,
                                                    std::span<const SEX> sexes,
                                                    std::span<const animal_number> offspring);

/// By node: how many offspring name it as their sire or dam. Offspring of a group count for the
/// group's node, not for its candidates.
SPX_EXPORT std::vector<std::size_t> offspringCounts(const GeneticPedigree& pedigree);

}  // namespace spx
