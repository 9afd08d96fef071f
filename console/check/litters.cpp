// Births of one dam, and where she and the sire were.
#include <algorithm>
#include <string>
#include <vector>

#include "spx/support/number_text.h"

#include "console/check/rules.h"
#include "console/check/whereabouts.h"

namespace spx::console {
namespace {

/// A birth whose day is known to within a range.
struct dated_birth {
  std::uint32_t dam;
  std::uint32_t record;
  date_range days;
};

std::vector<dated_birth> birthsByDam(const CheckedRecords& records) {
  std::vector<dated_birth> births;
  for (position record = 0; record < records.size(); ++record) {
    const auto days = knownDays(records[record].birth);
    if (records.dam(record) != CheckedRecords::NONE && days) {
      births.push_back({records.dam(record), static_cast<std::uint32_t>(record), *days});
    }
  }
  std::stable_sort(births.begin(), births.end(), [](const dated_birth& a, const dated_birth& b) {
    return a.dam != b.dam ? a.dam < b.dam : a.days.first + a.days.last < b.days.first + b.days.last;
  });
  return births;
}

bool isOnOneDay(const dated_birth& a, const dated_birth& b) {
  return a.dam == b.dam && isExact(a.days) && isExact(b.days) && a.days.first == b.days.first;
}

/// Days from a life history; 0 where they are not set.
double lifeHistoryDays(const Biology& biology, const char* key) {
  const double days = biology.get(key).value.real();
  return days > 0 ? days : 0;
}

class Litters {
 public:
  Litters(const CheckedRecords& records, std::vector<finding>& findings)
      : records_(records),
        findings_(findings),
        whereabouts_(records),
        births_(birthsByDam(records)),
        gestation_(lifeHistoryDays(records.book().life_history, "GESTATION")) {
    const Biology& biology = records.book().life_history;
    // Births of one litter take some days even where the life history has no range for them.
    longest_litter_ = std::max(lifeHistoryDays(biology, "BIRTHDATE_RANGE"), 3.0);
    lays_eggs_ = laysEggs(biology);
    const qs_lib::DataRange<double> interval = biology.getBirthInterval();
    const bool has_interval = interval.upper > 0 && interval.lower <= interval.upper;
    shortest_interval_ = has_interval ? interval.lower : 0.9 * gestation_;
    has_single_births_ = hasSingleBirths(lifeHistoryDays(biology, "MAX_LITTER_SIZE"));
  }

  void check() {
    for (std::size_t i = 0; i < births_.size(); ++i) {
      checkPlaces(births_[i]);
      if (i > 0 && births_[i - 1].dam == births_[i].dam) {
        checkInterval(births_[i - 1], births_[i]);
      }
      for (std::size_t other = i; other > 0 && isOnOneDay(births_[other - 1], births_[i]); --other) {
        if (!checkLitter(births_[other - 1], births_[i])) {
          break;
        }
      }
    }
  }

 private:
  /// Whether the species has single births: by the life history, or else when at most one birth in twenty is of
  /// several animals. True for studbooks with fewer than twenty births, which prove nothing.
  bool hasSingleBirths(double litter_size) const {
    if (litter_size > 0) {
      return litter_size <= 1;
    }
    std::size_t births = 0;
    std::size_t several = 0;
    for (std::size_t i = 0; i < births_.size(); ++i) {
      const bool goes_on = i > 0 && isOnOneDay(births_[i - 1], births_[i]);
      const bool is_second = goes_on && (i < 2 || !isOnOneDay(births_[i - 2], births_[i - 1]));
      births += isExact(births_[i].days) && !goes_on ? 1 : 0;
      several += is_second ? 1 : 0;
    }
    return births < 20 || several * 20 <= births;
  }

  /// @return whether earlier births of the day should be compared too; one finding per birth is enough
  bool checkLitter(const dated_birth& a, const dated_birth& b) {
    const master_data& first = records_[a.record];
    const master_data& second = records_[b.record];
    if (first.stud_id == second.stud_id) {
      return false;  // duplicate ID: another rule reports it
    }
    if (!lays_eggs_ && whereabouts_.areApart(first.birth.location, second.birth.location)) {
      finding found = aboutBirths(CHECK::DAM_IN_TWO_PLACES, a, b);
      const std::string places =
          whereabouts_.name(first.birth.location) + " and " + whereabouts_.name(second.birth.location);
      found.values = {{"birth", dateText(second.birth)}, {"places", places}};
      found.message = records_.name(b.dam) + " gave birth to " + records_.name(a.record) + " and " +
                      records_.name(b.record) + " " + onDateText(second.birth) + " at two places, " + places;
      found.suggestion = "Correct the dam, the date or the place of one of them";
      findings_.push_back(found);
      return false;
    }
    const bool is_alike = first.sex == second.sex && first.sex != SEX::UNKNOWN &&
                          records_.sire(a.record) != CheckedRecords::NONE &&
                          records_.sire(a.record) == records_.sire(b.record);
    if (!is_alike || !has_single_births_) {
      return has_single_births_;
    }
    finding found = aboutBirths(CHECK::NEAR_DUPLICATE, a, b);
    std::rotate(found.animals.begin(), found.animals.begin() + 1, found.animals.end());  // the dam comes last
    found.values = {{"birth", dateText(second.birth)}, {"sex", getEnumName(second.sex)}};
    found.message = records_.name(a.record) + " and " + records_.name(b.record) +
                    " have the same parents, sex and birth date " + dateText(second.birth);
    found.suggestion = "They are twins, or one animal that was entered twice";
    findings_.push_back(found);
    return false;
  }

  void checkInterval(const dated_birth& a, const dated_birth& b) {
    const auto shortest = static_cast<double>(b.days.first - a.days.last);
    const auto longest = static_cast<double>(b.days.last - a.days.first);
    if (shortest <= longest_litter_ || longest >= shortest_interval_) {
      return;
    }
    finding found = aboutBirths(CHECK::LITTER_INTERVAL, a, b);
    const std::string days = qs_lib::realToString(longest, 0) + " days";
    found.values = {{"first", dateText(records_[a.record].birth)}, {"second", dateText(records_[b.record].birth)}};
    found.message = records_.name(b.dam) + " gave birth to " + records_.name(a.record) + " " +
                    onDateText(records_[a.record].birth) + " and to " + records_.name(b.record) + " " +
                    onDateText(records_[b.record].birth) + ", " + (shortest < longest ? "at most " : "") + days +
                    " later";
    found.suggestion = "Correct the dam or the date of one of them";
    findings_.push_back(found);
  }

  void checkPlaces(const dated_birth& birth) {
    const master_data& animal = records_[birth.record];
    const master_data& dam = records_[birth.dam];
    const std::vector<packed_deme> at_birth = whereabouts_.placesOf(dam, birth.days);
    if (!lays_eggs_ && whereabouts_.areApart({animal.birth.location}, at_birth)) {
      finding found = records_.about(CHECK::DAM_IN_TWO_PLACES, birth.record);
      found.animals.push_back(dam.stud_id);
      const std::string where = whereabouts_.name(animal.birth.location);
      const std::string there = whereabouts_.name(at_birth.front());
      found.values = {{"birth", dateText(animal.birth)}, {"places", where + " and " + there}};
      found.message = records_.name(birth.record) + " was born at " + where + " " + onDateText(animal.birth) +
                      ", but its dam " + records_.name(birth.dam) + " was at " + there;
      found.suggestion = "Correct the dam, the place of birth, or the events of the dam";
      findings_.push_back(found);
      return;
    }
    checkConception(birth);
  }

  /// Gestation varies; when it is not set, anything up to two years is allowed.
  void checkConception(const dated_birth& birth) {
    const std::uint32_t sire = records_.sire(birth.record);
    if (sire == CheckedRecords::NONE) {
      return;
    }
    constexpr std::int64_t LONGEST_GESTATION = 730;
    const auto longest = gestation_ > 0 ? static_cast<std::int64_t>(1.25 * gestation_) : LONGEST_GESTATION;
    const auto shortest = static_cast<std::int64_t>(0.75 * gestation_);
    const date_range days = {birth.days.first - longest, birth.days.last - shortest};
    const auto of_sire = whereabouts_.placesOf(records_[sire], days);
    const auto of_dam = whereabouts_.placesOf(records_[birth.dam], days);
    if (!whereabouts_.areApart(of_sire, of_dam)) {
      return;
    }
    finding found = records_.about(CHECK::PARENTS_APART, birth.record);
    found.animals.push_back(records_[sire].stud_id);
    found.animals.push_back(records_[birth.dam].stud_id);
    const std::string where = whereabouts_.name(of_sire.front());
    const std::string there = whereabouts_.name(of_dam.front());
    found.values = {{"birth", dateText(records_[birth.record].birth)}, {"places", where + " and " + there}};
    found.message = records_.name(birth.record) + " was born " + dateText(records_[birth.record].birth) +
                    ", but its parents were apart: " + records_.name(sire) + " at " + where + ", " +
                    records_.name(birth.dam) + " at " + there;
    found.suggestion = "Check the parents and their events";
    findings_.push_back(found);
  }

  finding aboutBirths(CHECK check, const dated_birth& a, const dated_birth& b) const {
    finding found = records_.about(check, b.record);
    found.animals = {records_[b.dam].stud_id, records_[a.record].stud_id, records_[b.record].stud_id};
    return found;
  }

  const CheckedRecords& records_;
  std::vector<finding>& findings_;
  Whereabouts whereabouts_;
  std::vector<dated_birth> births_;
  double gestation_ = 0;
  double longest_litter_ = 0;
  double shortest_interval_ = 0;
  bool has_single_births_ = false;
  bool lays_eggs_ = false;
};

}  // namespace

void checkLitters(const CheckedRecords& records, std::vector<finding>& findings) {
  Litters(records, findings).check();
}

}  // namespace spx::console
