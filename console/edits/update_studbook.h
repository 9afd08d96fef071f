#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/edits/compare_editions.h"
#include "console/edits/studbook_edit.h"

namespace spx::console {

/// Whose word counts where a table would take back what was changed by hand since it was imported.
enum class HAND_EDITS : std::uint8_t {
  ASK,    ///< neither's: the update is refused
  OURS,   ///< the hand edits stay
  THEIRS  ///< the table is right
};

/// Makes the tables of a studbook file those of an edition, as a part of an edit: rows are added, changed
/// and removed, each with its place in the history. Columns and tables that the edition does not
/// have stay as they are; they are noted.
///
/// Throws Failure, with a line for each, when hand edits would be taken back and nobody said
/// what to do.
void updateStudbook(StudbookEdit& edit, const edition& table, HAND_EDITS hand_edits);

}  // namespace spx::console
