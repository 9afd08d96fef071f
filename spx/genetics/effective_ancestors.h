#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

/// The ancestors that explain the genes of a population without counting a gene twice.
namespace spx {

/// How effectiveAncestors() works.
struct ancestor_options {
  std::size_t most = std::numeric_limits<std::size_t>::max();  ///< ancestors to find
  bool members_count = false;  ///< animals of the set that have parents count as ancestors too; those without do
  /// Only genes of known founders count, see knownShares(): genes of unknown origin are explained from the start.
  bool known_only = false;
};

/// An ancestor and its marginal contribution.
struct ancestor_share {
  animal_number animal;  ///< the ancestor, or the offspring of a phantom
  bool is_phantom;       ///< a missing parent of the animal
  double share;          ///< of the genes, beyond those that the ancestors before it explain
};

/// The ancestors of a set, in the order in which they were found.
struct effective_ancestors {
  std::vector<ancestor_share> ancestors;  ///< the largest share first
  double explained = 0;                   ///< the sum of the shares: 1 unless fewer were asked for
  double number = 0;  ///< fa = 1 / sum q^2 over those found, or (sum q)^2 / sum q^2 if known_only; NaN without any
};

/// Finds effective ancestors (Boichard, Maignel & Verrier 1997): the ancestor with the largest
/// contribution first; its parents are then cut off, what descends from it counts as explained, and
/// the next is sought. A missing parent is an ancestor of its own, like in contributionsTo().
///
/// Which of several equal contributions comes first can change the number, where one of the animals
/// descends from another. The oldest generation is taken, by the longest line of ancestors; animals of
/// one generation do not descend from each other, and their order changes nothing. So the number
/// follows from the pedigree alone. Contributions within 1e-9 of each other count as equal: sums that
/// are equal differ by their rounding.
///
/// An ancestor costs as many steps as it has ancestors and descendants behind the set.
SPX_EXPORT effective_ancestors effectiveAncestors(const GeneticPedigree& pedigree, std::span<const animal_number> set,
                                                  const ancestor_options& options = {});

}  // namespace spx
