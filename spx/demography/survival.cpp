#include "spx/demography/survival.h"

#include <algorithm>
#include <map>
#include <optional>

#include "spx/core/meta_population.h"

namespace spx {
namespace {

using qs_lib::day_number;

constexpr double HALF_DAY = 0.5;

struct watched_days {
  double entry;
  double exit;
  bool died;
  day_number first;  ///< the calendar day of the entry
  packed_deme location;
};

/// The names of groups, numbered as they come.
class Groups {
 public:
  explicit Groups(std::vector<std::string>& names) : names_(names) {}

  std::uint32_t number(const std::string& name) {
    const auto [found, is_new] = numbers_.try_emplace(name, names_.size());
    if (is_new) names_.push_back(name);
    return static_cast<std::uint32_t>(found->second);
  }

 private:
  std::vector<std::string>& names_;
  std::map<std::string, std::size_t> numbers_;
};

std::string placeAt(packed_deme location, int level) {
  DemeID id;
  id.set(location);
  for (int below = level + 1; below < DemeID::LEVELS; ++below) {
    id.blocks[static_cast<std::size_t>(below)] = 0;
  }
  const packed_deme place = id.binary();
  if (place == 0) return "";
  return MetaPop.memberExists(place) ? MetaPop.getMemberName(place) : id.text();
}

std::string groupOf(const master_data& animal, SURVIVAL_GROUPS by) {
  switch (by) {
    case SURVIVAL_GROUPS::SEX:
      return getEnumName(animal.sex);
    case SURVIVAL_GROUPS::ORIGIN:
      return getEnumName(animal.birth_type);
    case SURVIVAL_GROUPS::REARING:
      return getEnumName(animal.rearing);
    case SURVIVAL_GROUPS::TAXON:
      return Subspecies.getName(animal.taxon);
    default:
      return "all";
  }
}

/// Collects the times of the animals.
class Watch {
 public:
  Watch(const DataFilter& view, const survival_settings& settings, survival_data& data)
      : view_(view), settings_(settings), data_(data), groups_(data.groups) {}

  // Why the animal gave no time; COUNT when it did.
  LEFT_OUT take(const master_data& animal, const Presence::life& life, std::span<const stay> stays) {
    if (!isAgeKnown(life, view_.class_width)) return LEFT_OUT::UNKNOWN_AGE;
    if (life.assumed_entry && view_.left_truncated) return LEFT_OUT::UNKNOWN_ENTRY;
    const bool has_died = stays.back().end == STAY_END::DIED;
    if (!view_.right_censored && !has_died) return LEFT_OUT::NOT_DEAD;
    animal_ = life.animal;
    LEFT_OUT reason = LEFT_OUT::OUTSIDE_PERIOD;
    day_number reached = view_.left_truncated ? 0 : life.birth;
    for (const stay& time : stays) {
      const auto watched = watchedDuring(life, time, reached);
      if (!watched) continue;
      reached = 0;  // the time before the first stay is watched only once
      if (add(animal, *watched))
        reason = LEFT_OUT::COUNT;
      else if (reason != LEFT_OUT::COUNT)
        reason = LEFT_OUT::NO_GROUP;
    }
    return reason;
  }

 private:
  // The part of a stay within the period of the view.
  std::optional<watched_days> watchedDuring(const Presence::life& life, const stay& time, day_number from_birth) const {
    const day_number last = std::min(time.to, view_.end_date);
    if (time.from > view_.end_date || time.to < view_.start_date) return std::nullopt;
    day_number first = std::max(time.from, view_.start_date);
    if (time.to == view_.start_date && time.from < time.to) return std::nullopt;
    if (from_birth != 0) first = from_birth;
    const bool died = time.end == STAY_END::DIED && time.to <= view_.end_date;
    if (last <= first && !died) return std::nullopt;
    const double entry = double{1} * first - life.birth;
    return watched_days{entry, last > first ? double{1} * last - life.birth : entry + HALF_DAY, died, first,
                        time.location};
  }

  bool add(const master_data& animal, const watched_days& watched) {
    if (settings_.by == SURVIVAL_GROUPS::PERIOD) return addPeriods(watched), true;
    const std::string name = settings_.by == SURVIVAL_GROUPS::LOCATION ? placeAt(watched.location, settings_.level)
                                                                       : groupOf(animal, settings_.by);
    if (name.empty()) return false;
    data_.times.push_back({watched.entry, watched.exit, watched.died, groups_.number(name), animal_});
    return true;
  }

  // Splits a time at the boundaries of the calendar periods.
  void addPeriods(const watched_days& watched) {
    const std::int64_t years = std::max(settings_.period_years, 1);
    double entry = watched.entry;
    day_number day = watched.first;
    while (true) {
      const std::int64_t year = qs_lib::civilFromDay(day).year;
      const std::int64_t start = year - ((year % years) + years) % years;
      const auto next = qs_lib::dayFromCivil({start + years, 1, 1});
      const double left = next ? double{1} * *next - day : watched.exit;
      const bool is_last = entry + left >= watched.exit;
      const std::string name =
          std::to_string(start) + (years > 1 ? " to " + std::to_string(start + years - 1) : std::string());
      data_.times.push_back(
          {entry, is_last ? watched.exit : entry + left, is_last && watched.died, groups_.number(name), animal_});
      if (is_last) return;
      entry += left;
      day = *next;
    }
  }

  const DataFilter& view_;
  const survival_settings& settings_;
  survival_data& data_;
  Groups groups_;
  position animal_ = 0;
};

// Groups come in the order of their names.
void sortGroups(survival_data& data) {
  std::vector<std::uint32_t> order(data.groups.size());
  for (std::uint32_t at = 0; at < order.size(); ++at) order[at] = at;
  std::sort(order.begin(), order.end(),
            [&data](std::uint32_t a, std::uint32_t b) { return data.groups[a] < data.groups[b]; });
  std::vector<std::uint32_t> place(order.size());
  std::vector<std::string> names;
  for (std::uint32_t at = 0; at < order.size(); ++at) {
    place[order[at]] = at;
    names.push_back(data.groups[order[at]]);
  }
  data.groups = std::move(names);
  for (observed_time& time : data.times) time.group = place[time.group];
}

}  // namespace

bool isAgeKnown(const Presence::life& life, double class_width) {
  return life.birth != 0 && life.birth_error <= class_width;
}

survival_data survivalData(const std::vector<master_data>& records, const DataFilter& view,
                           const presence_settings& presence, const survival_settings& settings) {
  const STAYS join = settings.by == SURVIVAL_GROUPS::LOCATION ? STAYS::BY_LOCATION : STAYS::JOINED;
  const Presence lives(records, view, presence, join);
  survival_data data;
  data.in_view = lives.in_view;
  data.left_out = lives.left_out;
  data.findings = lives.findings;
  data.births.resize(records.size());
  Watch watch(view, settings, data);
  for (const Presence::life& life : lives.lives()) {
    const LEFT_OUT reason = watch.take(records[life.animal], life, lives.stays(life));
    data.births[life.animal] = life.birth;
    ++(reason == LEFT_OUT::COUNT ? data.counted : data.left_out[reason]);
  }
  sortGroups(data);
  return data;
}

survival_curve survivalOf(const survival_data& data, std::uint32_t group) {
  std::vector<observed_time> times;
  std::copy_if(data.times.begin(), data.times.end(), std::back_inserter(times),
               [group](const observed_time& one) { return one.group == group; });
  return kaplanMeier(times);
}

}  // namespace spx
