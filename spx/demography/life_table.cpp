#include "spx/demography/life_table.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "spx/demography/age_structure.h"
#include "spx/demography/births.h"

namespace spx {
namespace {

constexpr std::uint32_t NOWHERE = std::numeric_limits<std::uint32_t>::max();

/// The shares with which an animal counts as female and as male.
struct sex_weights {
  double female;
  double male;
};

sex_weights weightsOf(SEX sex, double unknown_male_share) {
  if (sex == SEX::FEMALE) return {1, 0};
  if (sex == SEX::MALE) return {0, 1};
  if (std::isnan(unknown_male_share)) return {0, 0};
  return {1 - unknown_male_share, unknown_male_share};
}

/// Adds lives and births to the tallies.
class Tally {
 public:
  Tally(const AnimalData& store, bool prorating, life_tallies& data)
      : store_(store), prorating_(prorating), data_(data), classes_(data.classes.starts.size()) {
    data_.tallies.resize(2 * data_.samples * classes_);
  }

  void share(std::size_t records, std::uint32_t seed) {
    sample_.assign(records, 0);
    if (data_.samples < 2) return;
    for (std::size_t at = 0; at < records; ++at) sample_[at] = static_cast<std::uint32_t>(at % data_.samples);
    std::shuffle(sample_.begin(), sample_.end(), std::mt19937(seed));
  }

  /// @param order  the running number of the animal among those that count
  void live(const observed_time& time, std::uint32_t order) {
    const sex_weights weights = weightsOf(store_.records[time.animal].sex, data_.unknown_male_share);
    for (std::size_t at = data_.classes.of(time.entry); at < classes_; ++at) {
      const double end = data_.classes.end(at);
      const double until = std::min(time.exit, end);
      const bool is_last = time.exit <= end;
      const bool died = is_last && time.died;
      const double days = until - std::max(time.entry, data_.classes.starts[at]);
      const bool is_whole = !prorating_ || at + 1 == classes_;
      const double seen = is_whole ? 1 : (days + (died ? end - until : 0)) / data_.classes.width(at);
      const class_tally one{seen, days, died ? 1.0 : 0.0};
      add(order, SEX::FEMALE, at, one, weights.female);
      add(order, SEX::MALE, at, one, weights.male);
      if (is_last) return;
    }
  }

  void bear(std::uint32_t order, SEX parent, double age, SEX child) {
    const sex_weights weights = weightsOf(child, data_.unknown_male_share);
    class_tally one;
    one.daughters = weights.female;
    one.sons = weights.male;
    one.offspring = 1;
    add(order, parent, data_.classes.of(age), one, 1);
  }

 private:
  void add(std::uint32_t order, SEX sex, std::size_t at, const class_tally& one, double weight) {
    if (weight == 0) return;
    class_tally& to = data_.tallies[(2 * sample_[order] + (sex == SEX::MALE)) * classes_ + at];
    to.at_risk += weight * one.at_risk;
    to.exposure += weight * one.exposure;
    to.deaths += weight * one.deaths;
    to.daughters += weight * one.daughters;
    to.sons += weight * one.sons;
    to.offspring += weight * one.offspring;
  }

  const AnimalData& store_;
  bool prorating_;
  life_tallies& data_;
  std::size_t classes_;
  std::vector<std::uint32_t> sample_;
};

/// The times of one animal, which follow each other.
struct time_range {
  std::uint32_t first = NOWHERE;
  std::uint32_t count = 0;
};

/// Finds the parents at the day of a birth.
class Parents {
 public:
  Parents(const std::vector<observed_time>& times, const std::vector<qs_lib::day_number>& births)
      : times_(times), births_(births), ranges_(births.size()) {
    for (std::uint32_t at = 0; at < times.size(); ++at) {
      time_range& range = ranges_[times[at].animal];
      if (range.first == NOWHERE) range.first = at;
      ++range.count;
    }
  }

  // The age of a parent that was watched on the day, or at most `days_before` days before it; else NaN.
  double ageAt(position parent, qs_lib::day_number day, double days_before) const {
    if (parent == birth_record::NO_PARENT || ranges_[parent].first == NOWHERE) return NOT_KNOWN;
    const double age = double{1} * day - births_[parent];
    const time_range& range = ranges_[parent];
    for (std::uint32_t at = range.first; at < range.first + range.count; ++at) {
      const observed_time& time = times_[at];
      if (age >= time.entry && age - days_before <= time.exit) return std::min(age, time.exit);
    }
    return NOT_KNOWN;
  }

 private:
  const std::vector<observed_time>& times_;
  const std::vector<qs_lib::day_number>& births_;
  std::vector<time_range> ranges_;
};

void leaveOutUnknownSexes(const AnimalData& store, survival_data& data) {
  position last = birth_record::NO_PARENT;
  std::erase_if(data.times, [&](const observed_time& time) {
    const SEX sex = store.records[time.animal].sex;
    if (sex == SEX::MALE || sex == SEX::FEMALE) return false;
    if (time.animal != last) {
      ++data.left_out[LEFT_OUT::UNKNOWN_SEX];
      --data.counted;
    }
    last = time.animal;
    return true;
  });
}

double unknownMaleShare(const AnimalData& store, const DataFilter& view, const survival_data& data) {
  double males = 0;
  double females = 0;
  position last = birth_record::NO_PARENT;
  for (const observed_time& time : data.times) {
    if (time.animal == last) continue;
    last = time.animal;
    males += store.records[time.animal].sex == SEX::MALE;
    females += store.records[time.animal].sex == SEX::FEMALE;
  }
  return maleShareOfUnknown(view.handle_unknown, males, females);
}

void addBirths(const std::vector<birth_record>& births, const Parents& parents, const std::vector<std::uint32_t>& order,
               double gestation, Tally& tally, life_tallies& data) {
  for (const birth_record& birth : births) {
    const double dam = parents.ageAt(birth.dam, birth.day, 0);
    const double sire = parents.ageAt(birth.sire, birth.day, gestation);
    if (!std::isnan(dam)) tally.bear(order[birth.dam], SEX::FEMALE, dam, birth.sex);
    if (!std::isnan(sire)) tally.bear(order[birth.sire], SEX::MALE, sire, birth.sex);
    ++(std::isnan(dam) && std::isnan(sire) ? data.unplaced_births : data.placed_births);
  }
}

}  // namespace

double age_classes::end(std::size_t at) const {
  return at + 1 < starts.size() ? starts[at + 1] : std::numeric_limits<double>::infinity();
}

double age_classes::width(std::size_t at) const {
  return at + 1 < starts.size() ? starts[at + 1] - starts[at] : open_width;
}

std::size_t age_classes::of(double age) const {
  const auto after = std::upper_bound(starts.begin(), starts.end(), age);
  return after == starts.begin() ? 0 : static_cast<std::size_t>(after - starts.begin()) - 1;
}

age_classes ageClasses(const DataFilter& view) {
  age_classes classes;
  classes.open_width = view.class_width;
  for (std::size_t at = 0; at < std::max<std::size_t>(view.number_of_classes, 1); ++at) {
    classes.starts.push_back(static_cast<double>(at) * view.class_width);
  }
  return classes;
}

class_tally& class_tally::operator+=(const class_tally& other) {
  at_risk += other.at_risk;
  exposure += other.exposure;
  deaths += other.deaths;
  daughters += other.daughters;
  sons += other.sons;
  offspring += other.offspring;
  return *this;
}

life_tallies lifeTallies(const AnimalData& store, const DataFilter& view, const presence_settings& presence,
                         const age_classes& classes, double gestation, std::size_t samples, std::uint32_t seed) {
  survival_data lives = survivalData(store.records, view, presence, {});
  life_tallies data;
  data.classes = classes;
  data.unknown_male_share = unknownMaleShare(store, view, lives);
  if (std::isnan(data.unknown_male_share)) leaveOutUnknownSexes(store, lives);
  data.in_view = lives.in_view;
  data.counted = lives.counted;
  data.left_out = lives.left_out;
  data.findings = lives.findings;
  data.samples = std::max<std::size_t>(std::min(samples, lives.counted), 1);

  Tally tally(store, view.prorating, data);
  tally.share(lives.counted, seed);
  std::vector<std::uint32_t> order(store.records.size(), NOWHERE);
  std::uint32_t number = 0;
  for (const observed_time& time : lives.times) {
    if (order[time.animal] == NOWHERE) order[time.animal] = number++;
    tally.live(time, order[time.animal]);
  }
  const std::vector<birth_record> births = birthsOf(store, presence);
  data.male_share = maleShareAtBirth(births);
  addBirths(births, Parents(lives.times, lives.births), order, gestation, tally, data);
  return data;
}

life_tallies joinSamples(life_tallies data) {
  const std::size_t each = 2 * data.classes.starts.size();
  for (std::size_t at = each; at < data.tallies.size(); ++at) data.tallies[at % each] += data.tallies[at];
  data.tallies.resize(each);
  data.samples = 1;
  return data;
}

namespace {

double offspringOf(const class_tally& tally, SEX sex, bool same_sex) {
  if (!same_sex) return tally.offspring / 2;
  return sex == SEX::MALE ? tally.sons : tally.daughters;
}

void setIntervals(life_table_row& row, double hazard_variance) {
  const auto q = wilsonInterval(row.deaths, row.at_risk);
  row.q_lower = q.lower;
  row.q_upper = q.upper;
  if (row.l > 0 && row.l < 1) {
    const double log_l = std::log(row.l);
    const double half = NORMAL_95 * std::sqrt(hazard_variance) / log_l;
    row.l_lower = std::exp(-std::exp(std::log(-log_l) - half));
    row.l_upper = std::exp(-std::exp(std::log(-log_l) + half));
  }
}

std::vector<life_table_row> tableOf(std::span<const class_tally> tallies, std::span<const double> births,
                                    const age_classes& classes) {
  std::size_t used = tallies.size();
  while (used > 0 && tallies[used - 1].at_risk == 0) --used;
  std::vector<life_table_row> rows(used);
  double l = 1;
  double hazard_variance = 0;
  for (std::size_t at = 0; at < used; ++at) {
    life_table_row& row = rows[at];
    const class_tally& tally = tallies[at];
    row = {.age = classes.starts[at],
           .width = classes.width(at),
           .at_risk = tally.at_risk,
           .exposure = tally.exposure,
           .deaths = tally.deaths,
           .l = l,
           .births = births[at]};
    setIntervals(row, hazard_variance);
    const bool is_open = at + 1 == tallies.size();
    if (row.at_risk > 0) row.q = is_open && row.deaths > 0 ? 1 : std::min(row.deaths / row.at_risk, 1.0);
    row.p = row.at_risk > 0 ? 1 - row.q : 1;
    if (row.at_risk > 0) hazard_variance += row.deaths / (row.at_risk * std::max(row.at_risk - row.deaths, 0.0));
    row.L = (l + l * row.p) / 2 * row.width;
    if (is_open && row.deaths > 0) row.L = l * row.exposure / row.deaths;
    row.m = row.exposure > 0 ? row.births / row.exposure * row.width : 0;
    l *= row.p;
  }
  double total = 0;
  for (std::size_t at = used; at-- > 0;) {
    total += rows[at].L;
    rows[at].T = total;
    rows[at].e = rows[at].l > 0 ? total / rows[at].l : NOT_KNOWN;
  }
  return rows;
}

}  // namespace

std::vector<life_table_row> lifeTable(std::span<const class_tally> tallies, const age_classes& classes, SEX sex,
                                      bool same_sex) {
  std::vector<double> births;
  for (const class_tally& tally : tallies) births.push_back(offspringOf(tally, sex, same_sex));
  return tableOf(tallies, births, classes);
}

std::vector<life_table_row> lifeTableOfAll(const life_tallies& data, bool same_sex) {
  std::vector<class_tally> both;
  std::vector<double> births;
  const auto females = data.of(0, SEX::FEMALE);
  const auto males = data.of(0, SEX::MALE);
  for (std::size_t at = 0; at < females.size(); ++at) {
    both.push_back(females[at]);
    both.back() += males[at];
    births.push_back(offspringOf(females[at], SEX::FEMALE, same_sex) + offspringOf(males[at], SEX::MALE, same_sex));
  }
  return tableOf(both, births, data.classes);
}

}  // namespace spx
