#include "console/tables/workbook_cells.h"

#include "console/base/failure.h"
#include "console/tables/workbook_formats.h"

namespace spx::console {

void writeWorkbookCells(const std::string& content, const std::function<void(std::string_view)>& output) {
  const XmlParts parts(content);
  SheetCells cells;
  if (isOds(parts)) {
    readOds(parts, cells);
  } else if (isXlsx(parts)) {
    readXlsx(parts, cells);
  } else {
    throw Failure(parts.has("xl/workbook.bin") ? "is a workbook of the .xlsb kind; save it as .xlsx or .ods"
                                               : "not an .xlsx or .ods workbook");
  }
  cells.write(output);
}

}  // namespace spx::console
