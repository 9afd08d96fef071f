#include "spx/demography/presence.h"

#include <algorithm>
#include <numeric>

#include "spx/core/identifiers.h"
#include "spx/project/biology.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

using qs_lib::day_number;

bool isDeparture(MOVE_TYPE event) {
  return event == MOVE_TYPE::RELEASED || event == MOVE_TYPE::POPULATION_OUT || event == MOVE_TYPE::SURPLUS ||
         event == MOVE_TYPE::LOST_TO_FOLLOW_UP || event == MOVE_TYPE::DEATH;
}

bool isEntry(MOVE_TYPE event) {
  return event == MOVE_TYPE::FROM_WILD || event == MOVE_TYPE::POPULATION_IN;
}

bool isNothing(MOVE_TYPE event) {
  return event == MOVE_TYPE::BIRTH || event >= MOVE_TYPE::NO_EVENT;
}

STAY_END endBy(MOVE_TYPE event) {
  switch (event) {
    case MOVE_TYPE::RELEASED:
    case MOVE_TYPE::POPULATION_OUT:
    case MOVE_TYPE::SURPLUS:
      return STAY_END::DEPARTED;
    case MOVE_TYPE::LOST_TO_FOLLOW_UP:
      return STAY_END::LOST;
    default:
      return STAY_END::DIED;
  }
}

/// Walks through the events of one animal and notes its stays.
class Follower {
 public:
  Follower(const master_data& animal, life_course& course, life_findings& findings)
      : animal_(animal), stays_(course.stays), course_(course), findings_(findings) {}

  void walk(const std::vector<life_event>& life) {
    for (const life_event& one : life) {
      if (one.is_birth) {
        beBorn(one.day, life);
      } else if (one.is_end) {
        end(one.day);
      } else {
        follow(*one.event, one.day);
      }
    }
  }

 private:
  // A wild-born animal is there from its first event, unless that event is a departure.
  void beBorn(day_number day, const std::vector<life_event>& life) {
    location_ = animal_.birth.location;
    const auto first = std::find_if(life.begin() + 1, life.end(),
                                    [](const life_event& one) { return one.is_end || !isNothing(one.event->event); });
    const bool is_wild = animal_.birth_type == BIRTH_TYPE::WILD_BORN;
    const bool is_move = first != life.end() && !first->is_end;
    if (is_move && (isEntry(first->event->event) || (is_wild && !isDeparture(first->event->event)))) {
      return;
    }
    course_.assumed_entry = is_wild;
    findings_.assumed_entries += is_wild;
    begin(day, STAY_START::BORN);
  }

  void follow(const move_data& move, day_number day) {
    if (isNothing(move.event)) return;
    if (isDeparture(move.event)) return leave(move.event, day);
    if (inside_) {
      findings_.entries_while_present += isEntry(move.event);
      return change(move.location, day);
    }
    // Social and management events do not bring an animal back, but as its first event they count as an entry.
    if (!stays_.empty() && !isEntry(move.event) && move.event != MOVE_TYPE::ARRIVAL) {
      ++findings_.events_while_away;
      return;
    }
    if (move.location != 0) location_ = move.location;
    begin(day, STAY_START::ENTERED);
  }

  void begin(day_number day, STAY_START start) {
    stays_.push_back({day, STILL_THERE, location_, start, STAY_END::PRESENT});
    inside_ = true;
  }

  void change(packed_deme location, day_number day) {
    if (location == location_ || location == 0) return;
    stays_.back().to = day;
    stays_.back().end = STAY_END::MOVED;
    location_ = location;
    begin(day, STAY_START::ARRIVED);
  }

  void leave(MOVE_TYPE event, day_number day) {
    if (!inside_) {
      ++findings_.departures_while_away;
      return;
    }
    stays_.back().to = day;
    stays_.back().end = endBy(event);
    inside_ = false;
  }

  void end(day_number day) {
    if (inside_) return leave(animal_.death.event, day);
    findings_.ends_while_away += !stays_.empty();
  }

  const master_data& animal_;
  std::vector<stay>& stays_;
  life_course& course_;
  life_findings& findings_;
  packed_deme location_ = 0;
  bool inside_ = false;
};

bool hasDiedBy(const master_data& animal, const life_event& end) {
  return end.is_end && endBy(animal.death.event) == STAY_END::DIED;
}

// Animals count from the day on which they emerge; earlier stays are cut or dropped.
bool emerge(life_course& course, double days) {
  if (!(days > 0) || course.birth == 0) return true;
  const double first = course.birth + days;
  if (first >= STILL_THERE) return false;
  const auto day = static_cast<day_number>(first);
  std::erase_if(course.stays, [day](const stay& one) { return one.to < day; });
  if (course.stays.empty()) return false;
  stay& earliest = course.stays.front();
  if (earliest.from >= day) return true;
  earliest.from = day;
  if (earliest.start == STAY_START::ARRIVED) earliest.start = STAY_START::BORN;
  return true;
}

/// The longest life of an animal of that sex, in days; 0 where it is not limited.
double longestLife(SEX sex, const presence_settings& settings) {
  if (sex == SEX::MALE || sex == SEX::FEMALE) {
    return sex == SEX::MALE ? settings.longest_male_life : settings.longest_female_life;
  }
  const bool is_limited = settings.longest_male_life > 0 && settings.longest_female_life > 0;
  return is_limited ? std::max(settings.longest_male_life, settings.longest_female_life) : 0;
}

void presumeLost(life_course& course, const std::vector<life_event>& life, double longest_life,
                 const presence_settings& settings, life_findings& findings) {
  stay& last = course.stays.back();
  if (!(longest_life > 0) || last.end != STAY_END::PRESENT || course.birth == 0) return;
  if (settings.until - double{1} * course.birth <= longest_life) return;
  ++findings.presumed_lost;
  last.to = std::max(last.from, life.back().day);
  last.end = STAY_END::LOST;
}

double lifeHistoryDays(const char* key) {
  const double days = LifeHistory.get(key).value.real();
  return days > 0 ? days : 0;
}

template <class Value>
bool isChosen(Value wanted, Value value) {
  return wanted == Value::ALL || wanted == value;
}

bool areDatesGood(const master_data& animal, const DataFilter& view) {
  const auto is_good = [&view](const move_data& move) { return isNotWorse(move.accuracy, view.event_accuracy); };
  return isNotWorse(animal.birth.accuracy, view.birth_accuracy) &&
         (animal.death.date == 0 || isNotWorse(animal.death.accuracy, view.death_accuracy)) &&
         std::all_of(animal.moves.begin(), animal.moves.end(), is_good);
}

}  // namespace

presence_settings presenceSettings(const DataFilter& view) {
  presence_settings settings;
  settings.use_neonate = view.use_neonate;
  settings.use_stillbirth = view.use_stillbirth;
  settings.neonatal_days = lifeHistoryDays("NEONATAL_AGE");
  settings.emerge_days = view.use_emerge ? lifeHistoryDays("DEN_EMERGE") : 0;
  settings.longest_male_life = LifeHistory.getLongevity(SEX::MALE);
  settings.longest_female_life = LifeHistory.getLongevity(SEX::FEMALE);
  settings.until = view.end_date;
  return settings;
}

const char* getText(LEFT_OUT reason) {
  constexpr const char* TEXTS[] = {
      "neither birth nor entry is dated",
      "died or lost before birth",
      "stillborn",
      "died as neonates",
      "gone before emerging from the den",
      "never in the chosen locations",
      "not there in the period",
      "sex unknown",
      "age unknown",
      "wild-born with unknown day of entry",
      "no death known",
      "group unknown",
      "not born there in the period",
  };
  return reason < LEFT_OUT::COUNT ? TEXTS[static_cast<std::size_t>(reason)] : "";
}

std::size_t left_out_counts::total() const {
  return std::accumulate(counts.begin(), counts.end(), std::size_t{0});
}

LEFT_OUT earlyDeath(const master_data& animal, const std::vector<life_event>& life, const presence_settings& settings) {
  const life_event& birth = life.front();
  const life_event& end = life.back();
  if (!birth.is_birth || !hasDiedBy(animal, end)) return LEFT_OUT::COUNT;
  const bool is_stillborn = end.day == birth.day && birth.error == 0 && end.error == 0;
  if (is_stillborn && !settings.use_stillbirth) return LEFT_OUT::STILLBIRTH;
  const bool is_neonate = !is_stillborn && end.day - birth.day <= settings.neonatal_days;
  return is_neonate && !settings.use_neonate ? LEFT_OUT::NEONATE : LEFT_OUT::COUNT;
}

LEFT_OUT followLife(const master_data& animal, const presence_settings& settings, life_course& course,
                    life_findings& findings) {
  course.stays.clear();
  course.birth = course.birth_error = 0;
  course.assumed_entry = false;
  std::vector<life_event> life;
  if (!datedLife(animal, life, findings)) return LEFT_OUT::ENDS_BEFORE_BIRTH;
  if (life.empty()) return LEFT_OUT::NO_DATES;
  if (life.front().is_birth && animal.birth.accuracy != DATE_ACCURACY::UNKNOWN) {
    course.birth = life.front().day;
    course.birth_error = life.front().error;
  }
  const LEFT_OUT early = earlyDeath(animal, life, settings);
  if (early != LEFT_OUT::COUNT) return early;
  Follower(animal, course, findings).walk(life);
  if (course.stays.empty()) return LEFT_OUT::NO_DATES;
  presumeLost(course, life, longestLife(animal.sex, settings), settings, findings);
  return emerge(course, settings.emerge_days) ? LEFT_OUT::COUNT : LEFT_OUT::BEFORE_EMERGENCE;
}

void joinStays(const LocationSet& locations, std::vector<stay>& stays) {
  std::size_t kept = 0;
  bool continues = false;
  for (const stay& one : stays) {
    const bool chosen = locations.contains(one.location);
    if (chosen && continues && one.start == STAY_START::ARRIVED) {
      stays[kept - 1].to = one.to;
      stays[kept - 1].end = one.end;
    } else if (chosen) {
      stays[kept++] = one;
    }
    continues = chosen;
  }
  stays.resize(kept);
}

void keepStays(const LocationSet& locations, std::vector<stay>& stays) {
  std::erase_if(stays, [&locations](const stay& one) { return !locations.contains(one.location); });
}

bool isInViewRecord(const master_data& animal, const DataFilter& view) {
  const auto matches = [&animal](const user_filter& filter) {
    const auto field = static_cast<std::size_t>(filter.field);
    return field < animal.user_data.size() ? animal.user_data[field] == filter.value : filter.value.empty();
  };
  const double generation = animal.generation[G_GENETIC];
  return isChosen(view.origin, animal.birth_type) && isChosen(view.sex, animal.sex) &&
         isChosen(view.rearing, animal.rearing) && areDatesGood(animal, view) &&
         isInGeneration(generation, view.low_generation, view.high_generation) &&
         isInFcoef(animal.fcoef, view.low_inbreeding, view.high_inbreeding) &&
         (view.taxa.empty() || std::find(view.taxa.begin(), view.taxa.end(), animal.taxon) != view.taxa.end()) &&
         std::all_of(view.user_filters.begin(), view.user_filters.end(), matches) &&
         !isPseudoIndividual(animal.stud_id);
}

bool isPresent(const master_data& animal, day_number day, const LocationSet& locations,
               const presence_settings& settings) {
  life_course course;
  life_findings findings;
  followLife(animal, settings, course, findings);
  return std::any_of(course.stays.begin(), course.stays.end(),
                     [&](const stay& one) { return isDuring(one, day) && locations.contains(one.location); });
}

Presence::Presence(const std::vector<master_data>& records, const DataFilter& view, const presence_settings& settings,
                   STAYS join) {
  const LocationSet locations(view.demes);
  life_course course;
  for (position animal = 0; animal < records.size(); ++animal) {
    if (!isInViewRecord(records[animal], view)) continue;
    ++in_view;
    const LEFT_OUT reason = followLife(records[animal], settings, course, findings);
    if (reason != LEFT_OUT::COUNT) {
      ++left_out[reason];
      continue;
    }
    (join == STAYS::JOINED ? joinStays : keepStays)(locations, course.stays);
    if (course.stays.empty()) {
      ++left_out[LEFT_OUT::NEVER_THERE];
    } else {
      add(animal, records[animal], course);
    }
  }
}

void Presence::add(position animal, const master_data& record, const life_course& course) {
  lives_.push_back({animal, course.birth, course.birth_error, stays_.size(),
                    static_cast<std::uint32_t>(course.stays.size()), record.sex, course.assumed_entry});
  stays_.insert(stays_.end(), course.stays.begin(), course.stays.end());
}

bool Presence::isPresent(const life& one, day_number day) const {
  const auto times = stays(one);
  return std::any_of(times.begin(), times.end(), [day](const stay& time) { return isDuring(time, day); });
}

std::vector<position> Presence::presentOn(day_number day) const {
  std::vector<position> found;
  for (const life& one : lives_) {
    if (isPresent(one, day)) found.push_back(one.animal);
  }
  return found;
}

}  // namespace spx
