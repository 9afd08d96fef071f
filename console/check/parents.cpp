// Parents: their sex, animals that are their own parent or ancestor.
#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "console/check/rules.h"

namespace spx::console {
namespace {

constexpr const char* ROLE_NAMES[] = {"sire", "dam"};

std::uint32_t parentOf(const CheckedRecords& records, position record, std::size_t role) {
  return role == 0 ? records.sire(record) : records.dam(record);
}

bool mayBe(SEX sex, std::size_t role) {
  return sex == SEX::HERMAPHRODITE || sex == (role == 0 ? SEX::MALE : SEX::FEMALE);
}

/// Whether the record says neither male nor female.
bool isOpen(SEX sex) {
  return sex != SEX::MALE && sex != SEX::FEMALE;
}

/// The offspring of a parent whose sex does not fit, by its role.
struct parent_use {
  std::vector<position> offspring[2];
};

class ParentSexes {
 public:
  ParentSexes(const CheckedRecords& records, std::vector<finding>& findings) : records_(records), findings_(findings) {}

  void check() {
    for (position record = 0; record < records_.size(); ++record) {
      collect(record);
    }
    for (const auto& [parent, use] : uses_) {
      report(parent, use);
    }
  }

 private:
  void collect(position record) {
    for (const std::size_t role : {0U, 1U}) {
      const std::uint32_t parent = parentOf(records_, record, role);
      const bool is_other = parent != CheckedRecords::NONE && !records_.isOwnParent(record, role);
      if (is_other && !mayBe(records_[parent].sex, role)) {
        uses_[parent].offspring[role].push_back(record);
      }
    }
  }

  void report(position parent, const parent_use& use) {
    const SEX sex = records_[parent].sex;
    if (!isOpen(sex)) {
      return reportWrong(parent, use, sex == SEX::MALE ? 1 : 0);
    }
    if (!use.offspring[0].empty() && !use.offspring[1].empty()) {
      return reportBoth(parent, use);
    }
    reportUnknown(parent, use, use.offspring[0].empty() ? 1 : 0);
  }

  void reportWrong(position parent, const parent_use& use, std::size_t role) {
    const std::vector<position>& offspring = use.offspring[role];
    finding found = aboutOffspring(CHECK::PARENT_SEX, parent, offspring);
    found.message = records_.name(parent) + " is " + getEnumName(records_[parent].sex) + " but is the " +
                    ROLE_NAMES[role] + " of " + names(offspring);
    found.values = {{"sex", getEnumName(records_[parent].sex)}, {"role", ROLE_NAMES[role]}};
    if (offspring.size() == 1) {
      found.place = records_.placeOf(offspring.front());
    }
    if (areExchanged(offspring.front())) {
      const master_data& animal = records_[offspring.front()];
      found.suggestion = "The sire and dam of " + records_.name(offspring.front()) + " appear to be swapped";
      found.cure = {{animal.stud_id, "sire", animal.dam_id}, {animal.stud_id, "dam", animal.sire_id}};
    } else {
      found.suggestion =
          "Correct the sex of " + records_.name(parent) + ", or the " + ROLE_NAMES[role] + " of " + names(offspring);
    }
    findings_.push_back(found);
  }

  void reportBoth(position parent, const parent_use& use) {
    finding found = aboutOffspring(CHECK::PARENT_BOTH_SEXES, parent, use.offspring[0]);
    addAnimals(found, use.offspring[1]);
    found.values = {{"sex", getEnumName(records_[parent].sex)}};
    found.message = records_.name(parent) + " is the sire of " + names(use.offspring[0]) + " and the dam of " +
                    names(use.offspring[1]);
    found.suggestion = "Correct the sire entries or the dam entries";
    findings_.push_back(found);
  }

  void reportUnknown(position parent, const parent_use& use, std::size_t role) {
    const char* sex = role == 0 ? "male" : "female";
    finding found = aboutOffspring(CHECK::PARENT_SEX_UNKNOWN, parent, use.offspring[role]);
    found.values = {{"sex", getEnumName(records_[parent].sex)}, {"role", ROLE_NAMES[role]}};
    found.message = records_.name(parent) + " is the " + ROLE_NAMES[role] + " of " + names(use.offspring[role]) +
                    ", but its sex is " + getEnumName(records_[parent].sex);
    if (records_[parent].sex == SEX::UNKNOWN) {
      found.suggestion = "Set the sex of " + records_.name(parent) + " to " + sex;
      found.cure = {{records_[parent].stud_id, "sex", sex}};
    }
    findings_.push_back(found);
  }

  /// Whether the sire is female and the dam male, so that exchanging them would correct both.
  bool areExchanged(position record) const {
    const std::uint32_t sire = records_.sire(record);
    const std::uint32_t dam = records_.dam(record);
    return sire != CheckedRecords::NONE && dam != CheckedRecords::NONE && sire != record && dam != record &&
           records_[sire].sex == SEX::FEMALE && records_[dam].sex == SEX::MALE;
  }

  finding aboutOffspring(CHECK check, position parent, const std::vector<position>& offspring) const {
    finding found = records_.about(check, parent);
    addAnimals(found, offspring);
    return found;
  }

  void addAnimals(finding& found, const std::vector<position>& animals) const {
    for (const position animal : animals) {
      found.animals.push_back(records_[animal].stud_id);
    }
  }

  std::string names(const std::vector<position>& animals) const {
    std::vector<std::string> names;
    for (const position animal : animals) {
      names.push_back(records_.name(animal));
    }
    return listText(names);
  }

  const CheckedRecords& records_;
  std::vector<finding>& findings_;
  std::map<position, parent_use> uses_;
};

void addOwnParents(const CheckedRecords& records, std::vector<finding>& findings) {
  for (position record = 0; record < records.size(); ++record) {
    for (const std::size_t role : {0U, 1U}) {
      const std::uint32_t parent = parentOf(records, record, role);
      if (parent == CheckedRecords::NONE || !records.isOwnParent(record, role)) {
        continue;
      }
      finding found = records.about(CHECK::OWN_PARENT, record);
      found.values = {{"role", ROLE_NAMES[role]}};
      found.message = records.name(record) + " is its own " + ROLE_NAMES[role];
      found.suggestion = std::string("Correct the ") + ROLE_NAMES[role] + ", or make it unknown";
      found.cure = {{records[record].stud_id, ROLE_NAMES[role], ""}};
      findings.push_back(found);
    }
  }
}

/// Walks from every animal to its ancestors, without recursion. When the walk returns to an animal on its path, the
/// path from that animal on is a cycle. Of cycles that share animals only one is reported.
class Cycles {
 public:
  Cycles(const CheckedRecords& records, std::vector<finding>& findings)
      : records_(records), findings_(findings), state_(records.size(), NEW), is_reported_(records.size()) {}

  void check() {
    for (position record = 0; record < records_.size(); ++record) {
      if (state_[record] == NEW) {
        walkFrom(record);
      }
    }
  }

 private:
  enum state : std::uint8_t { NEW, ON_THE_WAY, DONE };

  struct step {
    std::uint32_t record;
    std::uint8_t next_role;
  };

  void walkFrom(position start) {
    enter(static_cast<std::uint32_t>(start));
    while (!way_.empty()) {
      step& last = way_.back();
      if (last.next_role == 2) {
        state_[last.record] = DONE;
        way_.pop_back();
        continue;
      }
      const std::uint32_t parent = parentOf(records_, last.record, last.next_role++);
      if (parent == CheckedRecords::NONE || parent == last.record) {
        continue;
      }
      if (state_[parent] == NEW) {
        enter(parent);
      } else if (state_[parent] == ON_THE_WAY) {
        close(parent);
      }
    }
  }

  void enter(std::uint32_t record) {
    state_[record] = ON_THE_WAY;
    way_.push_back({record, 0});
  }

  /// All animals from `first` to the end of the path form a cycle. Each is marked once, and the walk back stops at the
  /// first marked animal, so the total cost is linear.
  void close(std::uint32_t first) {
    std::size_t begin = way_.size();
    bool is_known = false;
    do {
      --begin;
      is_known = is_reported_[way_[begin].record];
      is_reported_[way_[begin].record] = true;
    } while (!is_known && way_[begin].record != first);
    if (!is_known) {
      report(begin);
    }
  }

  void report(std::size_t begin) {
    const std::string first = records_.name(way_[begin].record);
    finding found = records_.about(CHECK::PARENT_CYCLE, way_[begin].record);
    constexpr std::size_t SHOWN = 12;
    found.message = first + " is its own ancestor: " + first;
    for (std::size_t i = begin + 1; i < way_.size(); ++i) {
      found.animals.push_back(records_[way_[i].record].stud_id);
      if (i - begin < SHOWN) {
        found.message += ", its parent " + records_.name(way_[i].record);
      }
    }
    if (way_.size() - begin > SHOWN) {
      found.message += ", " + std::to_string(way_.size() - begin - SHOWN) + " more";
    }
    found.message += ", its parent " + first;
    found.suggestion = "Correct one of these parents";
    findings_.push_back(found);
  }

  const CheckedRecords& records_;
  std::vector<finding>& findings_;
  std::vector<std::uint8_t> state_;
  std::vector<bool> is_reported_;
  std::vector<step> way_;
};

}  // namespace

void checkParents(const CheckedRecords& records, std::vector<finding>& findings) {
  ParentSexes(records, findings).check();
  addOwnParents(records, findings);
  Cycles(records, findings).check();
}

}  // namespace spx::console
