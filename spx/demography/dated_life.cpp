#include "spx/demography/dated_life.h"

#include <algorithm>
#include <limits>

namespace spx {
namespace {

constexpr std::int64_t LAST_DAY = std::numeric_limits<qs_lib::day_number>::max() - 1;
constexpr std::int64_t HALF_WEEK = 3;

date_range monthOf(qs_lib::day_number day) {
  const qs_lib::civil_date date = qs_lib::civilFromDay(day);
  const std::int64_t first = std::int64_t{day} - date.day + 1;
  return {first, first + qs_lib::daysInMonth(date.year, date.month) - 1};
}

date_range yearOf(qs_lib::day_number day) {
  const std::int64_t year = qs_lib::civilFromDay(day).year;
  const auto first = qs_lib::dayFromCivil({year, 1, 1});
  const auto last = qs_lib::dayFromCivil({year, 12, 31});
  return {first.value_or(day), last.value_or(day)};
}

date_range around(qs_lib::day_number day, std::uint64_t days) {
  const auto half = static_cast<std::int64_t>(std::min<std::uint64_t>(days, LAST_DAY));
  return {std::int64_t{day} - half, std::int64_t{day} + half};
}

struct ranged_event {
  date_range range;
  const move_data* event;
};

// Whether one day can be chosen from each range so that the days never decrease.
bool inOrder(const std::vector<ranged_event>& events) {
  std::int64_t reached = 0;
  for (const ranged_event& one : events) {
    reached = std::max(reached, one.range.first);
    if (one.range.last < reached) return false;
  }
  return true;
}

void dropImpossible(std::vector<ranged_event>& moves, date_range birth, date_range end, life_findings& findings) {
  const auto kept = std::remove_if(moves.begin(), moves.end(), [&](const ranged_event& move) {
    const bool early = move.range.last < birth.first;
    const bool late = !early && move.range.first > end.last;
    findings.events_before_birth += early;
    findings.events_after_end += late;
    return early || late;
  });
  moves.erase(kept, moves.end());
}

void settleOrder(std::vector<ranged_event>& moves, life_findings& findings) {
  if (inOrder(moves)) return;
  ++findings.events_out_of_order;
  std::stable_sort(moves.begin(), moves.end(), [](const ranged_event& a, const ranged_event& b) {
    return a.range.first + a.range.last < b.range.first + b.range.last;
  });
}

// Trims each range by the events after it, then assigns the days, starting with the first event.
void giveDays(std::vector<ranged_event>& events, std::vector<life_event>& life) {
  std::int64_t latest = LAST_DAY;
  for (auto event = events.rbegin(); event != events.rend(); ++event) {
    latest = std::min(latest, event->range.last);
    event->range.last = latest;
  }
  std::int64_t earliest = 1;
  for (const ranged_event& one : events) {
    const std::int64_t first = std::max(one.range.first, earliest);
    const std::int64_t last = std::max(one.range.last, first);
    earliest = first + (last - first) / 2;
    life.push_back({static_cast<qs_lib::day_number>(std::min(earliest, LAST_DAY)),
                    static_cast<qs_lib::day_number>(last - earliest), one.event});
  }
}

}  // namespace

date_range rangeOf(const move_data& event) {
  switch (event.accuracy) {
    case DATE_ACCURACY::BY_WEEK:
      return around(event.date, HALF_WEEK);
    case DATE_ACCURACY::BY_MONTH:
      return monthOf(event.date);
    case DATE_ACCURACY::BY_YEAR:
      return yearOf(event.date);
    case DATE_ACCURACY::DATE_RANGE:
      return around(event.date, event.range);
    default:
      return around(event.date, 0);
  }
}

bool datedLife(const master_data& animal, std::vector<life_event>& life, life_findings& findings) {
  life.clear();
  const bool is_born = animal.birth.date != 0;
  const bool is_ended = animal.death.date != 0;
  const date_range birth = is_born ? rangeOf(animal.birth) : date_range{0, 0};
  const date_range end = is_ended ? rangeOf(animal.death) : date_range{LAST_DAY, LAST_DAY};
  if (end.last < birth.first) return false;

  std::vector<ranged_event> events;
  events.reserve(animal.moves.size() + 2);
  for (const move_data& move : animal.moves) {
    if (move.date == 0) {
      ++findings.undated_events;
    } else {
      events.push_back({rangeOf(move), &move});
    }
  }
  dropImpossible(events, birth, end, findings);
  settleOrder(events, findings);
  if (is_born) events.insert(events.begin(), {birth, &animal.birth});
  if (is_ended) events.push_back({end, &animal.death});
  giveDays(events, life);
  if (is_born) life.front().is_birth = true;
  if (is_ended) life.back().is_end = true;
  return true;
}

}  // namespace spx
