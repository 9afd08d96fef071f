#pragma once

#include <vector>

#include "console/check/checked_records.h"

/// The rules, by families. Each adds what it finds, in the order of the records.
namespace spx::console {

void checkIdentifiers(const CheckedRecords& records, std::vector<finding>& findings);
void checkParents(const CheckedRecords& records, std::vector<finding>& findings);
void checkMissingParents(const CheckedRecords& records, std::vector<finding>& findings);
void checkDates(const CheckedRecords& records, std::vector<finding>& findings);
void checkEvents(const CheckedRecords& records, std::vector<finding>& findings);
void checkLitters(const CheckedRecords& records, std::vector<finding>& findings);
void checkLocations(const CheckedRecords& records, std::vector<finding>& findings);

}  // namespace spx::console
