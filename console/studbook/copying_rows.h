#pragma once

#include <memory>
#include <string>

#include "console/tables/row_source.h"

namespace SQLite {
class Database;
}

namespace spx::console {

/// The same rows, each of which is stored in a table of a new studbook file when it is read. next()
/// throws Failure when a row cannot be stored.
/// @param path  the final path of the file, for messages
std::unique_ptr<RowSource> copyRows(std::unique_ptr<RowSource> rows, SQLite::Database& database,
                                    const std::string& table, const std::string& path);

}  // namespace spx::console
