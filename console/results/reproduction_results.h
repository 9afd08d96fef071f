#pragma once

#include <optional>

#include "console/output/table.h"
#include "console/results/demography_notes.h"

namespace spx::console {

/// The reproduction of the view: ages of parents, litters, season, sex ratio, breeders.
/// @param litter_days  births of a dam within this many days are one litter; not set: as the life history says
/// @param for_people   whether measures have titles, and the counts by month and litter size are notes below
Table reproductionTable(std::optional<double> litter_days, const time_unit& unit, bool for_people);

}  // namespace spx::console
