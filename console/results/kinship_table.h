#pragma once

#include <string>
#include <vector>

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// A row for every pair of animals, each pair once; an animal that is named twice is also paired with itself. The
/// animals need not be living or in the view. Throws Failure when there is not enough memory.
/// @param with_self  whether every animal is also paired with itself
Table kinshipTable(const GeneticBasis& basis, const std::vector<animal_number>& animals, UNKNOWN_PARENTS unknown,
                   bool with_self);

/// The same as a matrix: a row and a column for every animal.
Table kinshipMatrixTable(const GeneticBasis& basis, const std::vector<animal_number>& animals, UNKNOWN_PARENTS unknown);

}  // namespace spx::console
