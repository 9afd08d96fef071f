#pragma once

#include <optional>
#include <string>

#include "console/output/table.h"
#include "console/results/demography_notes.h"

namespace spx::console {

/// The options that choose the groups to compare.
struct survival_choice {
  std::string by = "none";               ///< none, sex, origin, rearing, location, taxon or period
  std::string level = {};                ///< location: the name of the level; empty: the one that suits the view
  std::optional<int> period_years = {};  ///< period: calendar years of each; 10 when not given
};

/// The survival curves of the view. Throws UsageError for an unknown level, and for a level or a period length with
/// groups that do not use it.
/// @param for_people  whether to show the curve only after a month and at the class ends; otherwise every step
Table survivalTable(const survival_choice& choice, const time_unit& unit, bool for_people);

/// A row for each group: deaths, the deaths expected if all groups had the same risk, median and mean; and the
/// log-rank test of all groups, repeated in every row. Throws UsageError as survivalTable does.
Table survivalSummary(const survival_choice& choice, const time_unit& unit);

/// The life tables of the females, the males and all animals of the view.
Table lifeTableTable(const time_unit& unit);

}  // namespace spx::console
