#pragma once

#include <cstddef>
#include <vector>

#include "spx/demography/presence.h"
#include "spx/support/export.h"
#include "spx/views/data_filter.h"

/// Numbers of animals over time, and what changed them.
namespace spx {

/// Numbers of animals by sex.
struct sex_counts {
  std::size_t males = 0;
  std::size_t females = 0;
  std::size_t unknown = 0;  ///< unknown, hermaphrodite and abnormal
  std::size_t total() const { return males + females + unknown; }
  /// The number of the animals of a sex.
  SPX_EXPORT std::size_t& of(SEX sex);
};

/// The numbers on a census day, and what happened since the census before.
struct census_row {
  qs_lib::day_number date = 0;
  sex_counts present;          ///< animals that are there on the day
  std::size_t births = 0;      ///< since the last census, up to and with this day
  std::size_t deaths = 0;      ///< likewise
  std::size_t entries = 0;     ///< from the wild, from outside, from places that are not chosen
  std::size_t departures = 0;  ///< to the wild, outside, to places that are not chosen
  std::size_t losses = 0;      ///< lost to follow-up
};

/// The census days of a view from start to end date: every census interval, on the census day and
/// month (a day beyond its month means the month's last one). Days and weeks count from the first
/// such day; months and quarters run from the census month; intervals of two and five years take
/// the years divisible by 2 and 5. Empty when there are no such days.
/// @param first  the day on which the first animal came: the series starts with the last census day
///               before it, when that is in the period; 0: with the start of the period
SPX_EXPORT std::vector<qs_lib::day_number> censusDays(const DataFilter& view, qs_lib::day_number first);

/// The earliest first day of all stays; 0 when there are none.
SPX_EXPORT qs_lib::day_number firstDay(const Presence& presence);

/// Counts the animals on each day.
///
/// The rows balance: the total of a row is that of the row before plus births and entries less
/// deaths, departures and losses. The first row counts everything up to its day, starting from no
/// animals. The totals of all places add up to that of the population.
/// @param days  ascending
/// Linear in the stays, times the logarithm of the days.
SPX_EXPORT std::vector<census_row> census(const Presence& presence, const std::vector<qs_lib::day_number>& days);

/// The yearly growth rate of the census: the slope of the logarithm of the numbers over time in
/// years, as a factor (1 where the numbers stay the same); NaN for fewer than two rows with animals.
SPX_EXPORT double censusLambda(const std::vector<census_row>& rows);

/// The same of the censuses of a view: those that censusDays gives from the first animal on.
SPX_EXPORT double censusLambda(const Presence& presence, const DataFilter& view);

}  // namespace spx
