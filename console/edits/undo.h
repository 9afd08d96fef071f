#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/edits/studbook_edit.h"

namespace spx::console {

/// The last change by the keeper that has not been undone; nothing when there is none.
std::optional<journal_change> lastChange(const std::vector<journal_change>& changes);

/// The last undo that was not itself undone, which redo takes back; nothing when there is none.
std::optional<journal_change> lastUndo(const std::vector<journal_change>& changes);

/// Undoes a change, as part of an edit. Throws Failure, naming the later change, when what it did
/// has been changed again since.
void takeBack(StudbookEdit& edit, std::int64_t change);

/// Writes the studbook file as it was after the last change up to a time, with its history up to
/// then. Throws Failure.
/// @param time    in UTC, in the journal's form
/// @param target  replaced as a whole when it is a studbook file; anything else is refused
/// @return the number of that last change
std::int64_t restoreStudbook(const std::string& file, const std::string& time, const std::string& target);

}  // namespace spx::console
