#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace spx::console {

/// Writes what a workbook holds as bytes that Workbook reads: for each sheet 'S' and its name, for
/// each of its rows that is not empty 'R', the row number from 1, the number of cells and the cells,
/// and 'E' at the end. Numbers have 32 bits; texts follow their length.
/// @param content  a workbook; its first bytes show whether it is .xlsx or .ods
/// @param output   takes the bytes in parts
/// Throws Failure for a file that cannot be understood.
void writeWorkbookCells(const std::string& content, const std::function<void(std::string_view)>& output);

}  // namespace spx::console
