#pragma once

#include <memory>
#include <string>

#include "console/studbook/studbook_file.h"
#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// Opens a table of a studbook file: its rows in the order of their numbers, with the titles and
/// the cells that the source had. Throws TableError.
std::unique_ptr<RowSource> openRows(const std::shared_ptr<StudbookFile>& file, const std::string& table);

/// The tables of a studbook file; they keep it open.
studbook_tables storedTables(const std::shared_ptr<StudbookFile>& file);

}  // namespace spx::console
