#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/edits/compare_editions.h"
#include "console/edits/studbook_edit.h"

namespace spx::console {

/// What to do when a table would undo what was changed by hand since it was imported.
enum class HAND_EDITS : std::uint8_t {
  ASK,    ///< refuse the update
  OURS,   ///< keep the hand edits
  THEIRS  ///< take the values of the table
};

/// Updates the tables of a studbook file to an edition, as part of an edit: rows are added, changed and
/// removed, and each change is recorded in the history. Columns and tables that the edition lacks are
/// unchanged, and a note says so.
///
/// Throws Failure, with a line for each, when hand edits would be undone and `hand_edits` is ASK.
void updateStudbook(StudbookEdit& edit, const edition& table, HAND_EDITS hand_edits);

}  // namespace spx::console
