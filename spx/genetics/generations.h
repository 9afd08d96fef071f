#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

/// How many generations away from the founders, and how much of the pedigree is known.
///
/// A parent counts as known if it is an animal, or comes from the wild while the other parent is an
/// animal. Founders are generation 0. Everything is by node and linear.
namespace spx {

/// The generation numbers of all animals.
struct generation_numbers {
  std::vector<double> cites;       ///< 1 + the smaller of the known parents' (CITES Conf. 10.16)
  std::vector<double> genetic;     ///< 1 + the mean of the known parents'
  std::vector<double> maternal;    ///< 1 + the dam's; 0 where the dam is unknown
  std::vector<double> equivalent;  ///< equivalent complete generations: the sum of (1/2)^n over all
                                   ///< known ancestors n generations back (Maignel et al. 1996)
  std::vector<double> traced;      ///< generations back in which all ancestors are known
  std::vector<double> maximum;     ///< the longest line (Boichard et al. 1997)
};

/// A group takes the mean of its candidates; for `cites` and `traced` their lowest number, for
/// `maximum` their highest.
SPX_EXPORT generation_numbers generationsOf(const GeneticPedigree& pedigree);

/// The share of the 2^g ancestors g generations back that is known, for g from 1 to `generations`.
/// @return by generation, then by node
SPX_EXPORT std::vector<std::vector<double>> completenessByGeneration(const GeneticPedigree& pedigree,
                                                                     std::size_t generations);

/// The index of pedigree completeness, I = 4 C_s C_d / (C_s + C_d), where C is the mean over the
/// generations back of the share of ancestors known on that side, at most 1/2 (MacCluer et al. 1983).
/// 0 where a parent is unknown.
/// @param generations  how far back; 0 gives 0
SPX_EXPORT std::vector<double> completenessIndex(const GeneticPedigree& pedigree, std::size_t generations);

}  // namespace spx
