#pragma once

#include <iosfwd>

#include "console/tables/reading_notes.h"

namespace spx::console {

/// Shows for every table how each of its columns was understood, with some of its values. Writes
/// nothing for tables whose columns are known by their fields, such as those of a studbook file.
void showColumns(std::ostream& out, const ReadingNotes& notes);

}  // namespace spx::console
