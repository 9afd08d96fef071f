#pragma once

#include <string>
#include <vector>

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

/// Genetics animal by animal.
namespace spx::console {

/// Which animals are listed.
struct listed_animals {
  std::vector<std::string> ids = {};  ///< as typed; none: the animals of the view
  bool living = false;                ///< of the view, only those alive on its day
};

/// F and ancestral F, with the common ancestors of the parents for animals that are listed by ID.
Table inbreedingTable(const GeneticBasis& basis, const listed_animals& who, UNKNOWN_PARENTS unknown);

/// F split by the founders whose genes cause it: a row for an animal and a founder. All missing parents that cause
/// some of it share one row per animal.
Table partialInbreedingTable(const GeneticBasis& basis, const listed_animals& who);

/// The common ancestors of the parents, each with its part of F.
Table commonAncestorTable(const GeneticBasis& basis, const listed_animals& who);

/// The living of the view by mean kinship, the lowest first: the animals that should breed.
Table meanKinshipTable(const GeneticBasis& basis, UNKNOWN_PARENTS unknown);

/// The generation numbers.
Table generationsTable(const GeneticBasis& basis, const listed_animals& who);

/// The share of ancestors known by generation, and the index of completeness.
Table completenessTable(const GeneticBasis& basis, const listed_animals& who, std::size_t generations);

}  // namespace spx::console
