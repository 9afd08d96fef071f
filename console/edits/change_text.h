#pragma once

#include <string>
#include <vector>

#include "console/edits/studbook_edit.h"

namespace spx::console {

/// What an edit has done so far, one line for each cell whose text differs and for each row that
/// was added or removed: `0042: sire 0001 -> 0003`.
std::vector<std::string> changeLines(StudbookEdit& edit);

/// A cell as people read it: `(empty)` for the empty text.
std::string shownCell(const std::string& cell);

/// The title of a user-defined column; any other column's title is its name.
std::string fieldTitle(SQLite::Database& database, const std::string& table, const std::string& field);

}  // namespace spx::console
