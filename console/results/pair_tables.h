#pragma once

#include <limits>
#include <string>
#include <vector>

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// The options that choose the pairs.
struct pair_choice {
  std::vector<std::string> males = {};    ///< IDs; none: the males of the view
  std::vector<std::string> females = {};  ///< likewise
  std::vector<std::string> unable = {};   ///< FIELD=VALUE of a user-defined field: animals with that value cannot breed
  double most_kinship = std::numeric_limits<double>::infinity();
  bool same_location = false;  ///< only pairs that live at the same location
  std::size_t picks = 0;       ///< number of pairs to pick one after the other; 0: rank all pairs
  std::size_t most_per_male = 1;
  std::size_t most_per_female = 1;
  bool is_static = false;  ///< picks follow one ranking; otherwise it is computed again after each pick
};

/// The pairs of the living males and females that can breed, sorted by the gene diversity that they keep, highest
/// first. The notes name the animals that were left out, with the reason. A hermaphrodite can be the sire and the
/// dam. Throws Failure when no pair is possible, and UsageError for a field that the studbook does not have.
Table pairsTable(const GeneticBasis& basis, const pair_choice& choice, UNKNOWN_PARENTS unknown);

}  // namespace spx::console
