#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "spx/demography/presence.h"

#include "console/output/table.h"

/// Shared parts of the demographic results, which are computed from Animals and View.
namespace spx::console {

/// A unit of time in results.
struct time_unit {
  double days = 1;        ///< the length of the unit
  int decimals = 0;       ///< for people
  const char* name = "";  ///< "years"
};

/// "years" or "days".
time_unit timeUnit(const std::string& name);

/// The animals of the view in words, worded to follow a title: "Alderhay Zoo, males".
std::string whoText();

/// The same with the period: "all animals, from 1990-01-01, until 2024-12-31".
std::string viewText();

/// Appends the lines that say how many animals of the view count, how many are left out and why, and which
/// contradictions were resolved.
void addCountNotes(Table& table, std::size_t in_view, const left_out_counts& left_out, const life_findings& findings);

/// Appends a warning when no death was counted: survival and growth then describe a population in which nobody dies.
void addDeathNote(Table& table, double deaths);

/// The first of these lines.
std::string countNote(std::size_t in_view, const left_out_counts& left_out);

/// Why animals of the view are not counted in a time: those that were never there, and those that were not there
/// between its first and its last day.
left_out_counts leftOutBetween(const Presence& presence, qs_lib::day_number first, qs_lib::day_number last);

/// Ends the view with the studbook: where the end of the period, or the day of the view, is open (today), it becomes
/// the last date in the records; a last date known by year or month means the end of that year or month. Otherwise
/// all animals would be assumed to live on, without births and deaths, after the keeper's last entry.
void endWithStudbook();

/// The gestation of the species in use in days; 0 when the life history does not give it.
double gestationDays();

/// A number with its noun: "1 animal", "12 animals".
std::string counted(std::size_t number, const std::string& noun);

/// A day as "2024-12-31".
std::string dayText(qs_lib::day_number day);

}  // namespace spx::console
