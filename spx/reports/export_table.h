#pragma once

#include "spx/support/csv_report.h"

namespace spx {

class Analysis;

/// Opens the table of an export, the analysis's file stem with the extension "csv" in its report
/// directory. A former file stays whole until the new one is complete.
/// @return false when it cannot be opened
bool openExportTable(qs_lib::CsvReport& table, const Analysis& analysis);

}  // namespace spx
