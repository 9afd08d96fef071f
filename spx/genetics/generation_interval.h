#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "spx/core/enumerations.h"
#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

/// Generation intervals: how old parents are when the offspring are born that breed in their turn.
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

/// Computes the intervals over the births of offspring that have bred themselves, whatever the set is
/// that they belong to later. Recent births are rare among them: their offspring are still to come.
/// A parent that is younger than its offspring by the dates counts age 0.
/// @param births  by node, in any unit; NaN for an unknown date
/// @param sexes   by node; only males and females count as offspring
SPX_EXPORT generation_intervals generationIntervals(const GeneticPedigree& pedigree, std::span<const double> births,
                                                    std::span<const SEX> sexes);

/// The same over some offspring alone.
/// @param offspring  who counts, if it has bred
SPX_EXPORT generation_intervals generationIntervals(const GeneticPedigree& pedigree, std::span<const double> births,
                                                    std::span<const SEX> sexes,
                                                    std::span<const animal_number> offspring);

/// By node: how many offspring name it as their sire or dam; a group's are its candidates' by share
/// and count for nobody.
SPX_EXPORT std::vector<std::size_t> offspringCounts(const GeneticPedigree& pedigree);

}  // namespace spx
