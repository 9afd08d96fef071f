#pragma once

#include "console/output/table.h"
#include "console/results/demography_notes.h"

namespace spx::console {

/// The census of the view: its census days, the animals there by sex, and the changes since the census before.
Table censusTable();

/// The animals that are there on the view's monitor date by age and sex.
/// @param for_people  drawn, the oldest on top; otherwise a row per class, and a row with an empty age for animals
///                    of unknown age
Table pyramidTable(const time_unit& unit, bool for_people);

}  // namespace spx::console
