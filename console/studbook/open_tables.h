#pragma once

#include "console/studbook/source_files.h"
#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// The tables that the files hold: CSV files, or a studbook file, which holds all of them. A studbook
/// file is read in the state that it has at the first access, and writers wait while one of these
/// sources exists. Throws Failure when a file is not a studbook file or damaged, and UsageError when
/// other files or titles are given for a studbook file.
studbook_tables openTables(const studbook_files& files);

}  // namespace spx::console
