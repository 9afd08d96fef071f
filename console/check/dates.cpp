// Births and deaths: against each other, today, and those of the parents.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "spx/core/estimated_dates.h"
#include "spx/support/number_text.h"

#include "console/check/rules.h"

namespace spx::console {
namespace {

/// In days: longer than any gestation. Allowed when the life history gives no gestation.
constexpr double LONGEST_GESTATION = 730;

/// The words for the end of a record: "died", or "was lost to follow-up".
const char* endWord(const master_data& animal) {
  return animal.death.event == MOVE_TYPE::LOST_TO_FOLLOW_UP ? "was lost to follow-up" : "died";
}

bool isDeath(const master_data& animal) {
  return animal.death.event == MOVE_TYPE::DEATH;
}

std::string yearsText(double days) {
  return qs_lib::realToString(days / DAYS_PER_YEAR, 1) + " years";
}

class Dates {
 public:
  Dates(const CheckedRecords& records, std::vector<finding>& findings)
      : records_(records), findings_(findings), biology_(records.book().life_history) {
    const double days = biology_.getGestation();
    gestation_ = days > 0 ? days : LONGEST_GESTATION;
    after_dam_ = laysEggs(biology_) ? gestation_ : 0;
    ages_[0] = biology_.getReproductiveAge(SEX::MALE);
    ages_[1] = biology_.getReproductiveAge(SEX::FEMALE);
  }

  void check() {
    for (position record = 0; record < records_.size(); ++record) {
      if (records_.isChecked(record)) {
        checkLife(record);
        const std::size_t others = undecided_;
        checkParent(record, records_.sire(record), 0);
        checkParent(record, records_.dam(record), 1);
        undecided_ = std::min(undecided_, others + 1);
      }
    }
    noteUndecided();
  }

 private:
  void checkLife(position record) {
    const master_data& animal = records_[record];
    const auto birth = knownDays(animal.birth);
    const auto end = knownDays(animal.death);
    if (birth && birth->first > records_.book().today) {
      addFuture(record, "was born ", animal.birth, "birth");
    }
    if (end && end->first > records_.book().today) {
      addFuture(record, std::string(endWord(animal)) + " ", animal.death, "death");
    }
    if (birth && end && end->last < birth->first) {
      finding found = records_.about(CHECK::DEATH_BEFORE_BIRTH, record);
      found.values = {{"birth", dateText(animal.birth)}, {"death", dateText(animal.death)}};
      found.message = records_.name(record) + " was born " + dateText(animal.birth) + " and " + endWord(animal) + " " +
                      dateText(animal.death);
      found.suggestion = "Correct one of the dates; they may be swapped";
      findings_.push_back(found);
    }
  }

  void addFuture(position record, const std::string& what, const move_data& event, const char* value) {
    finding found = records_.about(CHECK::FUTURE_DATE, record);
    found.values = {{value, dateText(event)}};
    found.message = records_.name(record) + " " + what + dateText(event) + ", which is in the future";
    found.suggestion = "Correct the year";
    findings_.push_back(found);
  }

  void checkParent(position record, std::uint32_t parent, std::size_t role) {
    if (parent == CheckedRecords::NONE || records_.isOwnParent(record, role)) {
      return;
    }
    const auto born = knownDays(records_[record].birth);
    const auto parent_born = knownDays(records_[parent].birth);
    if (!born || !parent_born) {
      ++undecided_;
    } else if (born->last <= parent_born->first) {
      addBornBefore(record, parent, role);
    } else {
      undecided_ += born->first <= parent_born->last ? 1 : 0;
      checkAge(record, parent, role, *born, *parent_born);
    }
    const auto parent_died = isDeath(records_[parent]) ? knownDays(records_[parent].death) : std::nullopt;
    if (!born || !parent_died) {
      return;
    }
    const auto days_after = static_cast<double>(born->first - parent_died->last);
    if (role == 1 && days_after > after_dam_) {
      addAfterDeath(CHECK::BORN_AFTER_DAM_DIED, record, parent, role, "");
    } else if (role == 0 && days_after > gestation_) {
      addAfterDeath(CHECK::CONCEIVED_AFTER_SIRE_DIED, record, parent, role, ", more than a gestation period earlier");
    }
  }

  void addBornBefore(position record, position parent, std::size_t role) {
    finding found = aboutBoth(CHECK::BORN_BEFORE_PARENT, record, parent);
    found.values = {{"birth", dateText(records_[record].birth)}, {"parent_birth", dateText(records_[parent].birth)}};
    found.message = records_.name(record) + " was born " + dateText(records_[record].birth) + ", its " +
                    roleName(role) + " " + records_.name(parent) + " was born " + dateText(records_[parent].birth);
    found.suggestion = std::string("Correct one of the dates, or the ") + roleName(role);
    findings_.push_back(found);
  }

  void addAfterDeath(CHECK check, position record, position parent, std::size_t role, const char* tail) {
    finding found = aboutBoth(check, record, parent);
    found.values = {{"birth", dateText(records_[record].birth)}, {"parent_death", dateText(records_[parent].death)}};
    found.message = records_.name(record) + " was born " + dateText(records_[record].birth) + ", its " +
                    roleName(role) + " " + records_.name(parent) + " died " + dateText(records_[parent].death) + tail;
    found.suggestion = std::string("Correct one of the dates, or the ") + roleName(role);
    findings_.push_back(found);
  }

  void checkAge(position record, position parent, std::size_t role, date_range born, date_range parent_born) {
    const qs_lib::DataRange<double>& allowed = ages_[role];
    if (!(allowed.upper > 0) || allowed.lower > allowed.upper) {
      return;
    }
    const auto oldest = static_cast<double>(born.last - parent_born.first);
    const auto youngest = static_cast<double>(born.first - parent_born.last);
    if (oldest < allowed.lower) {
      addAge(CHECK::PARENT_TOO_YOUNG, record, parent, "at most " + yearsText(oldest));
    } else if (youngest > allowed.upper) {
      addAge(CHECK::PARENT_TOO_OLD, record, parent, "at least " + yearsText(youngest));
    }
  }

  void addAge(CHECK check, position record, position parent, const std::string& age) {
    finding found = aboutBoth(check, record, parent);
    found.values = {
        {"age", age}, {"birth", dateText(records_[record].birth)}, {"parent_birth", dateText(records_[parent].birth)}};
    found.message =
        records_.name(parent) + " was " + age + " old at the birth of its offspring " + records_.name(record);
    found.suggestion = "Check the dates, the parent, and the reproductive ages of the life history";
    findings_.push_back(found);
  }

  void noteUndecided() {
    if (undecided_ == 0) {
      return;
    }
    finding found;
    found.check = CHECK::UNDECIDED;
    found.values = {{"births", std::to_string(undecided_)}};
    found.message = std::to_string(undecided_) + (undecided_ == 1 ? " birth" : " births") +
                    " cannot be compared with that of a parent: dates are missing or too rough";
    findings_.push_back(found);
  }

  finding aboutBoth(CHECK check, position record, position parent) const {
    finding found = records_.about(check, record);
    found.animals.push_back(records_[parent].stud_id);
    return found;
  }

  static const char* roleName(std::size_t role) { return role == 0 ? "sire" : "dam"; }

  const CheckedRecords& records_;
  std::vector<finding>& findings_;
  const Biology& biology_;
  double gestation_ = 0;
  double after_dam_ = 0;  ///< how many days after its dam's death an animal may be born
  qs_lib::DataRange<double> ages_[2] = {{0, 0}, {0, 0}};
  std::size_t undecided_ = 0;
};

}  // namespace

void checkDates(const CheckedRecords& records, std::vector<finding>& findings) {
  Dates(records, findings).check();
}

}  // namespace spx::console
