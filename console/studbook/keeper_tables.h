#pragma once

#include "console/studbook/source_files.h"
#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// The tables that CSV files and workbooks hold, as people write them: see readCells() and
/// settleLayout().
///
/// The animals of a workbook are in the sheet that the options name, else in the one named
/// "animals", else in the first; a workbook of the animals also gives the tables in its sheets
/// "events", "locations" and "programs" (in any case) where no other files are given for them. A
/// workbook that is given for another table has it in the sheet of that name, or in the first.
/// Throws Failure when a workbook cannot be read, and UsageError when the sheet does not exist.
/// @param files  without directories
studbook_tables keeperTables(const studbook_files& files);

}  // namespace spx::console
