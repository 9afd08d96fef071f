#include "console/commands/edit_findings.h"

#include <algorithm>
#include <map>
#include <utility>

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/project/biology.h"

#include "console/base/failure.h"
#include "console/base/silence.h"
#include "console/check/check_studbook.h"
#include "console/studbook/load_studbook.h"

namespace spx::console {
namespace {

constexpr std::size_t SHOWN = 10;  ///< at most so many cured and so many new findings

/// Whether a finding of the rule cannot be intended. Other errors, such as two animals with the same
/// ID, may be a step towards better data.
bool isImpossible(CHECK check) {
  static constexpr CHECK IMPOSSIBLE[] = {CHECK::PARENT_SEX,
                                         CHECK::PARENT_BOTH_SEXES,
                                         CHECK::OWN_PARENT,
                                         CHECK::PARENT_CYCLE,
                                         CHECK::FUTURE_DATE,
                                         CHECK::DEATH_BEFORE_BIRTH,
                                         CHECK::BORN_BEFORE_PARENT,
                                         CHECK::BORN_AFTER_DAM_DIED,
                                         CHECK::EVENT_BEFORE_BIRTH,
                                         CHECK::EVENT_AFTER_DEATH,
                                         CHECK::CONCEIVED_AFTER_SIRE_DIED};
  return std::find(std::begin(IMPOSSIBLE), std::end(IMPOSSIBLE), check) != std::end(IMPOSSIBLE);
}

/// The IDs that an edit has changed: old ID to new ID.
std::map<std::string, std::string> renamedAnimals(StudbookEdit& edit) {
  std::map<std::string, std::string> names;
  for (const journal_cell& cell : edit.cells()) {
    if (cell.table == "animals" && cell.field == "id" && cell.before && !cell.before->empty() && cell.after &&
        !cell.after->empty()) {
      names[*cell.before] = *cell.after;
    }
  }
  return names;
}

/// Replaces old IDs in findings, so that a renamed animal's finding counts as the same.
void rename(std::vector<finding>& findings, const std::map<std::string, std::string>& names) {
  const auto change = [&](std::string& text) {
    if (const auto name = names.find(text); name != names.end()) {
      text = name->second;
    }
  };
  for (finding& each : findings) {
    std::for_each(each.animals.begin(), each.animals.end(), change);
    for (auto& value : each.values) {
      change(value.second);
    }
  }
}

std::string lineOf(const char* what, const finding& each) {
  return std::string(what) + " " + severityName(each.severity()) + " " + codeOf(each.check).code + ": " + each.message;
}

}  // namespace

std::vector<finding> findingsOf(StudbookEdit& edit) {
  const Silence silence;
  loadStudbook(edit.tables(), "nothing was changed");
  const qs_lib::day_number today = qs_lib::msToDay(qs_lib::dateToJulian(qs_lib::getTodayAsISO()));
  std::vector<finding> findings = checkStudbook({Animals.records, LifeHistory, MetaPop, today, {}});
  dropStudbook();
  std::erase_if(findings, [](const finding& each) { return each.check == CHECK::UNDECIDED; });
  return findings;
}

FindingChanges::FindingChanges(StudbookEdit& edit, std::vector<finding> before, const std::vector<finding>& after) {
  rename(before, renamedAnimals(edit));
  added_ = addedFindings(before, after);
  cured_ = addedFindings(after, before);
}

void FindingChanges::refuseImpossible() const {
  std::string reasons;
  for (const finding& each : added_) {
    const bool was_there = std::any_of(cured_.begin(), cured_.end(), [&](const finding& other) {
      return other.check == each.check && other.animals == each.animals;
    });
    if (isImpossible(each.check) && !was_there) {
      reasons += "\n  " + each.message;
    }
  }
  if (!reasons.empty()) {
    throw Failure("this cannot be true, and nothing was changed:" + reasons + "\n  --anyway changes it regardless");
  }
}

std::vector<std::string> FindingChanges::lines() const {
  std::vector<std::string> lines;
  const auto add = [&](const char* what, const std::vector<finding>& findings) {
    for (std::size_t each = 0; each < std::min(SHOWN, findings.size()); ++each) {
      lines.push_back(lineOf(what, findings[each]));
    }
    if (findings.size() > SHOWN) {
      lines.push_back(std::string(what) + " " + std::to_string(findings.size() - SHOWN) + " more findings");
    }
  };
  add("fixes", cured_);
  add("adds", added_);
  return lines;
}

}  // namespace spx::console
