#pragma once

#include <string>
#include <vector>

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// A row for every pair of animals, each pair once; an animal that is named twice with itself too. Animals that are
/// not the living of the view are welcome. Throws Failure when there is not enough memory.
/// @param with_self  every animal with itself as well
Table kinshipTable(const GeneticBasis& basis, const std::vector<animal_number>& animals, UNKNOWN_PARENTS unknown,
                   bool with_self);

/// The same as a matrix: a row and a column for every animal.
Table kinshipMatrixTable(const GeneticBasis& basis, const std::vector<animal_number>& animals, UNKNOWN_PARENTS unknown);

}  // namespace spx::console
