#pragma once

#include "console/studbook/source_files.h"
#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// The tables that the files hold: CSV files, or a studbook file, which holds all of them. Of the
/// latter all is read as it was at the first look, whatever is written meanwhile; writers wait
/// while one of these sources lives. Throws Failure when a file is not a studbook file or damaged, and
/// UsageError when other files or titles are given for a studbook file.
studbook_tables openTables(const studbook_files& files);

}  // namespace spx::console
