#pragma once

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// The effective size by every method, with its interval and what it assumes.
Table effectiveSizeTable(const GeneticBasis& basis);

/// The mean ages of parents on the four paths.
Table generationIntervalTable(const GeneticBasis& basis);

}  // namespace spx::console
