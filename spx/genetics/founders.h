#pragma once

#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

/// Where the genes of a population come from.
namespace spx {

/// The missing parent of an animal whose other parent is known, or the missing part of its group: a
/// founder of its own, which has no record.
struct phantom_founder {
  animal_number offspring;
  bool is_sire;   ///< the sire is missing, else the dam
  bool is_known;  ///< caught in the wild
  double share;   ///< of the genes of the set
};

/// The share of the genes of a set of animals that is expected from each founder (Lacy 1989).
struct founder_contributions {
  std::vector<animal_number> founders;    ///< those that contribute, in the order of their numbers
  std::vector<double> shares;             ///< theirs, in the same order
  std::vector<phantom_founder> phantoms;  ///< those that contribute, in the order of their offspring
};

/// The contributions to a set; the shares of founders and phantoms add up to 1. Empty for an empty
/// set. Linear.
SPX_EXPORT founder_contributions contributionsTo(const GeneticPedigree& pedigree, std::span<const animal_number> set);

/// Effective founders, fe = 1 / sum p^2 (Lacy 1989; Rochambeau et al. 1989), phantoms included.
/// NaN without contributions.
SPX_EXPORT double effectiveFounders(const founder_contributions& contributions);

/// The same without phantoms of unknown origin, over the known part of the genes: fe = (sum p)^2 /
/// sum p^2. Founders of unknown origin are left out too.
SPX_EXPORT double effectiveKnownFounders(const GeneticPedigree& pedigree, const founder_contributions& contributions);

/// By node: the share of its genes that comes from the founder. Linear.
SPX_EXPORT std::vector<double> founderShares(const GeneticPedigree& pedigree, animal_number founder);

/// By node: the share of its genes that comes from known founders (Ballou & Lacy 1995): 1 for a
/// founder, the mean of the parents' shares for others, where a wild parent counts 1 and an unknown
/// one 0. Founders of unknown origin count 0. Linear.
SPX_EXPORT std::vector<double> knownShares(const GeneticPedigree& pedigree);

/// How many animals of a set descend from each of some ancestors, the ancestor not counted. One pass
/// over the pedigree for 64 ancestors.
SPX_EXPORT std::vector<std::size_t> descendantsInSet(const GeneticPedigree& pedigree,
                                                     std::span<const animal_number> ancestors,
                                                     std::span<const animal_number> set);

}  // namespace spx
