#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/edits/studbook_edit.h"

namespace spx::console {

/// The last change that the keeper has made and not taken back; nothing when there is none.
std::optional<journal_change> lastChange(const std::vector<journal_change>& changes);

/// The last undo that was not taken back: what redo repeats; nothing when there is none.
std::optional<journal_change> lastUndo(const std::vector<journal_change>& changes);

/// Takes a change back, as a part of an edit. Throws Failure, naming the later change, when what it
/// did was changed again.
void takeBack(StudbookEdit& edit, std::int64_t change);

/// Writes the studbook file as it was after the last change up to a time, with its history until
/// then. Throws Failure.
/// @param time    UTC, as the journal has it
/// @param target  replaced as a whole when it is a studbook file; anything else is refused
/// @return the number of that last change
std::int64_t restoreStudbook(const std::string& file, const std::string& time, const std::string& target);

}  // namespace spx::console
