#pragma once

#include <cstdint>
#include <vector>

#include "spx/core/master_data.h"
#include "spx/support/export.h"

namespace spx {

/// The days on which a dated event can have happened, both included.
struct date_range {
  std::int64_t first = 0;  ///< the earliest day
  std::int64_t last = 0;   ///< the latest day
};

/// The range that a date's accuracy leaves: the day itself when accurate or known by day; three
/// days to either side by week; the calendar month or year that holds the day; as many days to
/// either side as the event's range says. A date of unknown accuracy is a guess and is taken as it
/// stands.
SPX_EXPORT date_range rangeOf(const move_data& event);

/// One dated event of a life, on the day that calculations use.
struct life_event {
  qs_lib::day_number day = 0;        ///< the middle of what the order of the life leaves of the range
  qs_lib::day_number error = 0;      ///< days to either side that the day may be off
  const move_data* event = nullptr;  ///< the record's
  bool is_birth = false;             ///< the record's birth
  bool is_end = false;               ///< the record's death or loss
};

/// What was wrong with the events of animals and how it was resolved: numbers of cases.
struct life_findings {
  std::size_t undated_events = 0;         ///< events without a date: ignored
  std::size_t events_before_birth = 0;    ///< events that cannot be after the birth: ignored
  std::size_t events_after_end = 0;       ///< events that cannot be before the end: ignored
  std::size_t events_out_of_order = 0;    ///< lives whose events were put in the order of their dates
  std::size_t entries_while_present = 0;  ///< entries of an animal that was there: a change of place
  std::size_t departures_while_away = 0;  ///< departures of an animal that was gone: ignored
  std::size_t events_while_away = 0;      ///< other events of an animal that was gone: ignored
  std::size_t ends_while_away = 0;        ///< deaths and losses after a departure: not counted
  std::size_t assumed_entries = 0;        ///< wild-born animals without an entry: from their birth
  std::size_t presumed_lost = 0;          ///< open lives above the greatest longevity: lost at their last event
};

/// The dated events of an animal in the order in which they happened: birth, moves, end.
///
/// Dates are taken as ranges (rangeOf). The recorded order of the moves is kept where the ranges
/// allow it; otherwise they are ordered by their dates. Each range is then cut to what the events
/// before and after it leave, and the middle of the rest is the day: a death in March and a birth
/// known by year never make a negative age. Moves that lie wholly before the birth or after the end
/// are dropped and counted.
/// @param life  replaced
/// @return false, with nothing in `life`, when the end lies wholly before the birth
SPX_EXPORT bool datedLife(const master_data& animal, std::vector<life_event>& life, life_findings& findings);

}  // namespace spx
