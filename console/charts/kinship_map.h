#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "console/charts/chart.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// How the animals of a kinship map stand.
enum class KINSHIP_ORDER { LIKENESS, LOCATION };

/// The kinship of every two living animals of the view.
/// Throws Failure when there are none, or more than can be told apart in a picture.
heat_map kinshipMap(const GeneticBasis& basis, KINSHIP_ORDER order);

/// Places that stand close are alike: clusters of average linkage (Sokal & Michener 1958), joined from the most alike
/// pair on. Cubic in the places.
/// @param likeness  a square, as many rows as columns
std::vector<std::size_t> orderedByLikeness(const std::vector<std::vector<double>>& likeness);

}  // namespace spx::console
