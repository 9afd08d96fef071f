#pragma once

#include <memory>
#include <string>

#include "console/tables/row_source.h"

namespace SQLite {
class Database;
}

namespace spx::console {

/// The same rows, each stored in that table of a new studbook file when it is read. What cannot be
/// stored is a Failure of the file.
/// @param path  the place that the file will have
std::unique_ptr<RowSource> copyRows(std::unique_ptr<RowSource> rows, SQLite::Database& database,
                                    const std::string& table, const std::string& path);

}  // namespace spx::console
