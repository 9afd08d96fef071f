#pragma once

#include "console/output/result_output.h"
#include "console/output/table.h"

namespace spx::console {

/// Writes what people see of a table as an .xlsx workbook: numbers are numbers, dates are dates as exactly as they are
/// known, and no text is a formula. Throws Failure when the file exists and may not be replaced, or cannot be written.
void writeTableWorkbook(const Table& table, const table_part& part, const result_options& output);

}  // namespace spx::console
