#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/genetics/inbreeding.h"
#include "spx/support/export.h"

/// Who should breed with whom.
namespace spx {

/// A male, a female, and what an offspring of theirs would mean for the population.
struct breeding_pair {
  animal_number sire;
  animal_number dam;
  double offspring_inbreeding;  ///< the kinship of the pair; over known genes NaN when one of them has none
  double mean_kinship;          ///< the mean of the two animals' mean kinships with the population
  double kinship_difference;    ///< of their mean kinships, not negative
  double unknown;               ///< the share of the offspring's genes that is of unknown origin
  double diversity_change;      ///< of the population's gene diversity by one offspring
};

/// Which genes count.
enum class GENES {
  ALL,   ///< unknown parents are unrelated founders
  KNOWN  ///< only those of known founders, see knownKinships()
};

/// The pairs of all males with all females, sorted by the gene diversity that they keep, highest first.
/// The diversity with one offspring more is 1 - [N^2 MK + N (MK_s + MK_d) + (1 + k_sd) / 2] / (N + 1)^2.
/// Over known genes an animal counts as much as its known share u, an offspring (u_s + u_d) / 2:
/// 1 - [S + S_s + S_d + ((u_s + u_d) / 2 + k_sd) / 2] / (U + (u_s + u_d) / 2)^2 with sums S of known
/// kinships and U of known shares. An animal is not paired with itself. Empty for an empty population.
/// @param terms       for all genes, also with GENES::KNOWN
/// @param population  the animals whose gene diversity is computed
SPX_EXPORT std::vector<breeding_pair> rankPairs(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                                std::span<const animal_number> population,
                                                std::span<const animal_number> males,
                                                std::span<const animal_number> females, unsigned threads = 1,
                                                GENES genes = GENES::ALL);

/// How pickPairs() picks.
struct pick_options {
  std::size_t pairs = 10;
  std::size_t most_per_male = 1;
  std::size_t most_per_female = 1;
  double most_kinship = std::numeric_limits<double>::infinity();  ///< of a pair
  bool is_dynamic = true;                                         ///< mean kinships are computed again after each pick
  std::function<bool(animal_number sire, animal_number dam)> may_pair = {};  ///< empty: any pair may
  unsigned threads = 1;
  GENES genes = GENES::ALL;
};

/// A pair and the gene diversity of the population with an offspring of every pair up to it.
struct picked_pair {
  breeding_pair pair;
  double diversity;
};

/// Picks pairs one after the other, each time the one that keeps gene diversity highest. Dynamically,
/// the offspring of the pairs before belong to the population; else the ranking is that of the start.
/// Returns fewer pairs when no more are allowed.
SPX_EXPORT std::vector<picked_pair> pickPairs(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                              std::span<const animal_number> population,
                                              std::span<const animal_number> males,
                                              std::span<const animal_number> females, const pick_options& options = {});

}  // namespace spx
