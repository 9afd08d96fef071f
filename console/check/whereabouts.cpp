#include "console/check/whereabouts.h"

#include <algorithm>
#include <limits>

#include "console/tables/value_text.h"

namespace spx::console {
namespace {

/// The level whose demes are institutions: by its name, else the second level, or the only one.
int institutionLevel(const std::vector<deme_level>& levels) {
  static constexpr const char* NAMES[] = {"institution", "zoo", "facility", "holder", "collection", "owner", "park"};
  for (std::size_t level = 0; level < levels.size(); ++level) {
    const auto is_named = [&](const char* name) { return isSameWord(levels[level].name, name); };
    if (std::any_of(std::begin(NAMES), std::end(NAMES), is_named)) {
      return static_cast<int>(level);
    }
  }
  return std::min(static_cast<int>(levels.size()) - 1, 1);
}

packed_deme unknownPlace(const std::vector<deme_level>& levels) {
  if (levels.empty()) {
    return 0;
  }
  for (const deme_member& member : levels.front().members) {
    if (member.name == "unknown") {
      return member.id;
    }
  }
  return 0;
}

bool isDeparture(MOVE_TYPE event) {
  return event == MOVE_TYPE::RELEASED || event == MOVE_TYPE::POPULATION_OUT || event == MOVE_TYPE::SURPLUS ||
         event == MOVE_TYPE::LOST_TO_FOLLOW_UP;
}

constexpr date_range ANY_DAY = {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()};

}  // namespace

Whereabouts::Whereabouts(const CheckedRecords& records)
    : locations_(records.book().locations),
      unknown_(unknownPlace(locations_.levels())),
      institution_level_(institutionLevel(locations_.levels())) {
  for (const master_data& animal : records.book().records) {
    has_arrivals_ = has_arrivals_ || std::any_of(animal.moves.begin(), animal.moves.end(), [](const move_data& move) {
                      return move.event == MOVE_TYPE::ARRIVAL;
                    });
  }
}

std::vector<packed_deme> Whereabouts::placesOf(const master_data& animal, date_range days) const {
  if (animal.moves.empty() && !has_arrivals_) {
    return {};
  }
  std::vector<packed_deme> places;
  const move_data* last = &animal.birth;
  date_range since = knownDays(animal.birth).value_or(ANY_DAY);
  const auto stay = [&](std::int64_t until) {
    if (since.first > days.last || until < days.first) {
      return true;
    }
    places.push_back(last->location);
    return isKnown(last->location) && !isDeparture(last->event);
  };
  for (const move_data& move : animal.moves) {
    const date_range when = knownDays(move).value_or(ANY_DAY);
    // Moves that are not in the order of their dates prove nothing.
    if (when.last < since.first || !stay(when.last)) {
      return {};
    }
    last = &move;
    since = when;
  }
  const auto end = knownDays(animal.death);
  const bool has_died = end && animal.death.event == MOVE_TYPE::DEATH;
  if (!stay(has_died ? end->last : ANY_DAY.last) || (end && !has_died && end->first <= days.last)) {
    return {};
  }
  return places;
}

packed_deme Whereabouts::institutionOf(packed_deme place) const {
  DemeID deme;
  deme.set(place);
  for (int level = institution_level_ + 1; level < DemeID::LEVELS; ++level) {
    deme.blocks[static_cast<std::size_t>(level)] = 0;
  }
  return deme.binary();
}

bool Whereabouts::areApart(packed_deme a, packed_deme b) const {
  if (!isKnown(a) || !isKnown(b)) {
    return false;
  }
  const packed_deme first = institutionOf(a);
  const packed_deme second = institutionOf(b);
  return !isSubMember(first, second) && !isSubMember(second, first);
}

bool Whereabouts::areApart(const std::vector<packed_deme>& a, const std::vector<packed_deme>& b) const {
  if (a.empty() || b.empty()) {
    return false;
  }
  return std::all_of(a.begin(), a.end(), [&](packed_deme one) {
    return std::all_of(b.begin(), b.end(), [&](packed_deme other) { return areApart(one, other); });
  });
}

std::string Whereabouts::name(packed_deme place) const {
  return CheckedRecords::nameText(locations_.getMemberName(place));
}

}  // namespace spx::console
