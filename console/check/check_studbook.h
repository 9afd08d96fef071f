#pragma once

#include <vector>

#include "console/check/checked_records.h"
#include "console/check/finding.h"

namespace spx::console {

/// Everything that is wrong with a studbook, or may be: errors first, then warnings and notes, each rule's findings in
/// the order of the records. Changes nothing, so it can be asked before and after a change (addedFindings). What
/// cannot be decided for want of exact dates is counted in a single note.
///
/// Linear in records and events; the findings are all held, so their number decides about the memory.
std::vector<finding> checkStudbook(const checked_studbook& book);

}  // namespace spx::console
