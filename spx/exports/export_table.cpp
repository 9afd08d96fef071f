#include "spx/exports/export_table.h"

#include "spx/analyses/analysis.h"

namespace spx {

bool writeExportTable(const Analysis& analysis, qs_lib::process_timer& timer,
                      const std::function<void(qs_lib::CsvReport&)>& write) {
  timer.restart();
  qs_lib::CsvReport table;
  table.setDirectory(analysis.reportDirectory());
  table.setName(analysis.fileStem());
  table.setExtension("csv");
  table.setStaged(true);
  if (!table.fileOpen()) {
    return false;
  }
  write(table);
  const bool written = table.fileClose();
  timer.stop();
  return written;
}

}  // namespace spx
