#include "spx/demography/reproduction.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "spx/core/estimated_dates.h"
#include "spx/demography/births.h"
#include "spx/demography/statistics.h"
#include "spx/demography/survival.h"
#include "spx/project/biology.h"

namespace spx {
namespace {

using qs_lib::day_number;

constexpr day_number WEEK = 7;
constexpr day_number HALF_MONTH = 16;

/// What the births of a parent are, over its whole life.
struct parent_life {
  std::size_t offspring = 0;
  day_number first = 0;
  day_number last = 0;
  bool first_in_view = false;
  bool last_in_view = false;
};

/// The birthday of a record and how far it may be off; day 0: unknown.
struct birthday {
  day_number day = 0;
  day_number error = 0;
};

std::vector<birthday> birthdaysOf(const std::vector<master_data>& records) {
  std::vector<birthday> days(records.size());
  std::vector<life_event> life;
  life_findings findings;
  for (position at = 0; at < records.size(); ++at) {
    if (records[at].birth.date == 0 || records[at].birth.accuracy == DATE_ACCURACY::UNKNOWN) continue;
    if (datedLife(records[at], life, findings)) days[at] = {life.front().day, life.front().error};
  }
  return days;
}

class Reproduction {
 public:
  Reproduction(const AnimalData& store, const DataFilter& view, const presence_settings& presence,
               const reproduction_settings& settings)
      : store_(store),
        view_(anySex(view)),
        settings_(settings),
        presence_(store.records, view_, presence),
        births_(birthsOf(store, presence)),
        birthdays_(birthdaysOf(store.records)) {
    in_view_.assign(store.records.size(), false);
    for (const Presence::life& life : presence_.lives()) {
      const stay& first = presence_.stays(life).front();
      in_view_[life.animal] =
          first.start == STAY_START::BORN && first.from >= view_.start_date && first.from <= view_.end_date;
    }
  }

  reproduction_summary summary() {
    result_.date = std::min(view_.monitor_date, view_.end_date);
    result_.in_view = presence_.in_view;
    result_.left_out = presence_.left_out;
    result_.findings = presence_.findings;
    countSexes();
    result_.left_out[LEFT_OUT::NOT_BORN] += presence_.lives().size() - result_.births.total();
    parents(&birth_record::dam, SEX::FEMALE, settings_.youngest_dam, result_.females);
    parents(&birth_record::sire, SEX::MALE, settings_.youngest_sire, result_.males);
    litters();
    season();
    return std::move(result_);
  }

 private:
  static DataFilter anySex(DataFilter view) {
    view.sex = SEX::ALL;
    return view;
  }

  bool isCounted(const birth_record& birth) const { return in_view_[birth.child]; }

  void countSexes() {
    for (const birth_record& birth : births_) {
      if (isCounted(birth)) ++result_.births.of(birth.sex);
    }
    const auto males = static_cast<double>(result_.births.males);
    const double known = males + static_cast<double>(result_.births.females);
    result_.male_share = known > 0 ? males / known : NOT_KNOWN;
    result_.male_share_interval = wilsonInterval(males, known);
  }

  double ageOf(position animal, day_number day) const {
    if (animal == birth_record::NO_PARENT) return NOT_KNOWN;
    const birthday& born = birthdays_[animal];
    if (born.day == 0 || born.error > view_.class_width || day <= born.day) return NOT_KNOWN;
    return double{1} * day - born.day;
  }

  void parents(position birth_record::*parent, SEX sex, double youngest, parent_summary& to) {
    std::vector<parent_life> lives(store_.records.size());
    std::vector<double> ages;
    for (const birth_record& birth : births_) {
      const position one = birth.*parent;
      if (one != birth_record::NO_PARENT) addBirth(birth, lives[one]);
      if (!isCounted(birth)) continue;
      const double age = ageOf(one, birth.day);
      std::isnan(age) ? static_cast<void>(++to.unknown_ages) : ages.push_back(age);
    }
    to.all = describe(std::move(ages));
    firstAndLast(lives, to);
    to.adult_age = std::isnan(youngest) ? to.first.minimum : youngest;
    countAdults(lives, sex, to);
  }

  void addBirth(const birth_record& birth, parent_life& life) {
    if (life.offspring++ == 0 || birth.day < life.first) {
      life.first = birth.day;
      life.first_in_view = isCounted(birth);
    }
    if (birth.day >= life.last) {
      life.last = birth.day;
      life.last_in_view = isCounted(birth);
    }
  }

  void firstAndLast(const std::vector<parent_life>& lives, parent_summary& to) {
    std::vector<double> first;
    std::vector<double> last;
    for (position animal = 0; animal < lives.size(); ++animal) {
      if (lives[animal].offspring == 0) continue;
      const double at_first = ageOf(animal, lives[animal].first);
      const double at_last = ageOf(animal, lives[animal].last);
      if (lives[animal].first_in_view && !std::isnan(at_first)) first.push_back(at_first);
      const bool is_over = store_.records[animal].death.date != 0;
      if (is_over && lives[animal].last_in_view && !std::isnan(at_last)) last.push_back(at_last);
    }
    to.first = describe(std::move(first));
    to.last = describe(std::move(last));
  }

  void countAdults(const std::vector<parent_life>& lives, SEX sex, parent_summary& to) {
    std::vector<double> lifetime;
    for (const Presence::life& life : presence_.lives()) {
      if (life.sex != sex || !isAgeKnown(life, view_.class_width)) continue;
      const parent_life& as_parent = lives[life.animal];
      const double age = double{1} * result_.date - life.birth;
      if (age >= to.adult_age && presence_.isPresent(life, result_.date)) {
        ++to.adults;
        to.breeders += as_parent.offspring > 0 && as_parent.first <= result_.date;
      }
      const stay& last = presence_.stays(life).back();
      if (last.end == STAY_END::DIED && double{1} * last.to - life.birth >= to.adult_age) {
        lifetime.push_back(static_cast<double>(as_parent.offspring));
      }
    }
    to.lifetime = describe(std::move(lifetime));
  }

  void litters() {
    std::vector<const birth_record*> births;
    for (const birth_record& birth : births_) {
      if (!isCounted(birth)) continue;
      if (birth.dam == birth_record::NO_PARENT) {
        ++result_.dams_unknown;
      } else if (birthdays_[birth.child].day == 0 || birthdays_[birth.child].error > WEEK) {
        ++result_.days_unknown;
      } else {
        births.push_back(&birth);
      }
    }
    std::sort(births.begin(), births.end(), [](const birth_record* a, const birth_record* b) {
      return a->dam != b->dam ? a->dam < b->dam : a->day < b->day;
    });
    std::vector<double> sizes;
    std::vector<double> intervals;
    for (std::size_t at = 0; at < births.size();) {
      const birth_record& first = *births[at];
      std::size_t next = at + 1;
      const auto is_same = [&](const birth_record& one) {
        return one.dam == first.dam && one.day - first.day <= settings_.litter_days;
      };
      while (next < births.size() && is_same(*births[next])) ++next;
      sizes.push_back(static_cast<double>(next - at));
      ++result_.litter_sizes[next - at];
      if (next < births.size() && births[next]->dam == first.dam) intervals.push_back(births[next]->day - first.day);
      at = next;
    }
    result_.litters = describe(std::move(sizes));
    result_.intervals = describe(std::move(intervals));
  }

  void season() {
    double east = 0;
    double north = 0;
    double counted = 0;
    for (const birth_record& birth : births_) {
      if (!isCounted(birth)) continue;
      if (birthdays_[birth.child].day == 0 || birthdays_[birth.child].error > HALF_MONTH) {
        ++result_.months_unknown;
        continue;
      }
      const qs_lib::civil_date date = qs_lib::civilFromDay(birth.day);
      ++result_.months[date.month - 1];
      const double day = double{1} * birth.day - *qs_lib::dayFromCivil({date.year, 1, 1}) + 0.5;
      const double angle = 2 * std::numbers::pi * day / DAYS_PER_YEAR;
      east += std::sin(angle);
      north += std::cos(angle);
      counted += 1;
    }
    result_.mean_day = NOT_KNOWN;
    result_.concentration = counted > 0 ? std::hypot(east, north) / counted : NOT_KNOWN;
    if (counted == 0 || result_.concentration < 1e-9) return;
    const double angle = std::atan2(east, north);
    const double turn = angle < 0 ? angle + 2 * std::numbers::pi : angle;
    result_.mean_day = turn / (2 * std::numbers::pi) * DAYS_PER_YEAR + 0.5;
  }

  const AnimalData& store_;
  const DataFilter view_;
  const reproduction_settings& settings_;
  const Presence presence_;
  const std::vector<birth_record> births_;
  const std::vector<birthday> birthdays_;
  std::vector<bool> in_view_;
  reproduction_summary result_;
};

// The bounds of a life history start inverted: they are set once the lower one is not above the upper.
double youngestOf(SEX sex) {
  const qs_lib::DataRange<double> ages = LifeHistory.getReproductiveAge(sex);
  return ages.lower > 0 && ages.lower <= ages.upper ? ages.lower : NOT_KNOWN;
}

}  // namespace

reproduction_settings reproductionSettings() {
  const double days = LifeHistory.get("BIRTHDATE_RANGE").value.real();
  return {days > 0 ? days : WEEK, youngestOf(SEX::FEMALE), youngestOf(SEX::MALE)};
}

reproduction_summary reproductionOf(const AnimalData& store, const DataFilter& view, const presence_settings& presence,
                                    const reproduction_settings& settings) {
  return Reproduction(store, view, presence, settings).summary();
}

}  // namespace spx
