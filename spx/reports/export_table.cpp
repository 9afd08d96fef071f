#include "spx/reports/export_table.h"

#include "spx/analyses/analysis.h"

namespace spx {

bool openExportTable(qs_lib::CsvReport& table, const Analysis& analysis) {
  table.setDirectory(analysis.reportDirectory());
  table.setName(analysis.fileStem());
  table.setExtension("csv");
  table.setStaged(true);
  return table.fileOpen();
}

}  // namespace spx
