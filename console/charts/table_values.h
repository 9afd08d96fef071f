#pragma once

#include <string>
#include <vector>

#include "console/output/table.h"

namespace spx::console {

/// The numbers of a column, row by row; NaN for a missing value. The table needs to have the column.
std::vector<double> numbersOf(const Table& table, const std::string& column);

/// The cells of a column as people see them.
std::vector<std::string> textsOf(const Table& table, const std::string& column);

/// The year of each date of a column; "?" for a missing one.
std::vector<std::string> yearsOf(const Table& table, const std::string& column);

}  // namespace spx::console
