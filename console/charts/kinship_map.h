#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "console/charts/chart.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// The order of the animals in a kinship map.
enum class KINSHIP_ORDER { LIKENESS, LOCATION };

/// The kinship of every pair of living animals of the view. Throws Failure when there are none, or
/// too many to distinguish in a picture.
heat_map kinshipMap(const GeneticBasis& basis, KINSHIP_ORDER order);

/// An order in which similar items are close to each other: average-linkage clustering (Sokal & Michener 1958),
/// starting with the most similar pair. Cubic in the number of items.
/// @param likeness  a square matrix; larger values mean more similar
std::vector<std::size_t> orderedByLikeness(const std::vector<std::vector<double>>& likeness);

}  // namespace spx::console
