#pragma once

#include <limits>
#include <string>
#include <vector>

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// Which pairs the keeper asks for.
struct pair_choice {
  std::vector<std::string> males = {};    ///< IDs; none: the males of the view
  std::vector<std::string> females = {};  ///< likewise
  std::vector<std::string> unable = {};   ///< FIELD=VALUE of a user field: these animals cannot breed
  double most_kinship = std::numeric_limits<double>::infinity();
  bool same_location = false;  ///< only pairs that live at one place
  std::size_t picks = 0;       ///< so many pairs one after the other; 0: all pairs, ranked
  std::size_t most_per_male = 1;
  std::size_t most_per_female = 1;
  bool is_static = false;  ///< picks follow the ranking of today; else it is made again after each
};

/// The pairs of the living males and females that can breed, the one first that keeps gene diversity highest. The
/// notes name the animals that were left out, with the reason. A hermaphrodite can be the sire and the dam. Throws
/// Failure when no pair is possible, and UsageError for a field that the studbook does not have.
Table pairsTable(const GeneticBasis& basis, const pair_choice& choice, UNKNOWN_PARENTS unknown);

}  // namespace spx::console
