#pragma once

#include <functional>

#include "spx/support/csv_report.h"
#include "spx/support/process_clock.h"

namespace spx {

class Analysis;

/// Writes the table of an export, the analysis's file stem with the extension "csv" in its report
/// directory. An existing file is unchanged until the new one is complete.
/// @param timer  measures the writing
/// @param write  writes header and rows into the open table
/// @return false when it cannot be opened or not all of it could be written
[[nodiscard]] bool writeExportTable(const Analysis& analysis, qs_lib::process_timer& timer,
                                    const std::function<void(qs_lib::CsvReport&)>& write);

}  // namespace spx
