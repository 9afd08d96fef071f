#pragma once

#include <string>
#include <vector>

#include "console/edits/studbook_edit.h"

namespace spx::console {

/// What an edit has done up to now, in a line for each cell that another text stands in, and for
/// each row that was added or removed: `0042: sire 0001 -> 0003`.
std::vector<std::string> changeLines(StudbookEdit& edit);

/// A cell as people read it: `(empty)` for the empty text.
std::string shownCell(const std::string& cell);

/// The title of a column of the keeper's own; the name of any other column is its title.
std::string fieldTitle(SQLite::Database& database, const std::string& table, const std::string& field);

}  // namespace spx::console
