#pragma once

#include <vector>

#include "console/check/checked_records.h"
#include "console/check/finding.h"

namespace spx::console {

/// Everything that is wrong, or may be wrong, with a studbook: errors first, then warnings and notes, each rule's
/// findings in the order of the records. Changes nothing, so the results before and after a change can be compared
/// (addedFindings). Cases that cannot be decided without exact dates are counted in a single note.
///
/// Linear in records and events; all findings are kept in memory.
std::vector<finding> checkStudbook(const checked_studbook& book);

}  // namespace spx::console
