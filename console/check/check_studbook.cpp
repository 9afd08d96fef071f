#include "console/check/check_studbook.h"

#include <algorithm>

#include "console/check/rules.h"

namespace spx::console {

std::vector<finding> checkStudbook(const checked_studbook& book) {
  const CheckedRecords records(book);
  std::vector<finding> findings;
  checkIdentifiers(records, findings);
  checkParents(records, findings);
  checkMissingParents(records, findings);
  checkDates(records, findings);
  checkEvents(records, findings);
  checkLitters(records, findings);
  checkLocations(records, findings);
  std::stable_sort(findings.begin(), findings.end(),
                   [](const finding& a, const finding& b) { return a.check < b.check; });
  return findings;
}

}  // namespace spx::console
