#pragma once

#include <string>

#include "console/charts/chart.h"
#include "console/output/table.h"

/// The results of commands as charts: each takes the table for scripts of its command, so that a chart and its command
/// cannot differ.
/// @param subtitle  which animals the figures are about, and which period
namespace spx::console {

/// Animals by sex at each census, stacked.
chart censusChart(const Table& census, const std::string& subtitle);

/// Ages by sex: males to the left, females to the right.
/// @param unit  of the ages, such as "years"
chart pyramidChart(const Table& pyramid, const std::string& subtitle, const std::string& unit);

/// Survival by age with its interval of 95 %, a step curve for each group.
chart survivalChart(const Table& survival, const std::string& subtitle, const std::string& unit);

/// Births by month.
chart birthsChart(const Table& reproduction, const std::string& subtitle);

/// The expected numbers: median and interval of the runs, and the numbers without chance.
chart projectionChart(const Table& projection, const std::string& subtitle);

/// What each founder contributes and retains, the largest contribution on top.
/// @param most  founders shown
chart foundersChart(const Table& founders, const std::string& subtitle, std::size_t most = 30);

/// Mean inbreeding by year of birth.
chart inbreedingChart(const Table& by_year, const std::string& subtitle);

/// Gene diversity of the living by year.
chart diversityChart(const Table& by_year, const std::string& subtitle);

}  // namespace spx::console
