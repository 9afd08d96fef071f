#pragma once

#include "console/tables/sheet_cells.h"
#include "console/tables/xml_parts.h"

namespace spx::console {

/// Whether the packed files are those of an .xlsx workbook.
bool isXlsx(const XmlParts& parts);

/// Whether they are those of an .ods workbook.
bool isOds(const XmlParts& parts);

/// Reads the sheets of an .xlsx workbook. Throws Failure.
void readXlsx(const XmlParts& parts, SheetCells& cells);

/// Reads the sheets of an .ods workbook. Throws Failure.
void readOds(const XmlParts& parts, SheetCells& cells);

}  // namespace spx::console
