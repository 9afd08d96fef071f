#include "console/output/table_workbook.h"

#include "spx/support/file_name.h"

#include "console/tables/workbook_writer.h"

namespace spx::console {
namespace {

SHEET_COLUMN sheetColumn(COLUMN_KIND kind) {
  switch (kind) {
    case COLUMN_KIND::INTEGER:
    case COLUMN_KIND::REAL:
    case COLUMN_KIND::PERCENT:
      return SHEET_COLUMN::NUMBER;
    case COLUMN_KIND::DATE:
      return SHEET_COLUMN::DATE;
    default:
      return SHEET_COLUMN::TEXT;
  }
}

std::string sheetText(const Cell& cell, const table_column& column) {
  constexpr std::size_t MONTH_SIZE = 7;
  constexpr std::size_t YEAR_SIZE = 4;
  const std::string text = scriptText(cell);
  if (const auto* date = std::get_if<known_date>(&cell.get())) {
    return date->accuracy == DATE_ACCURACY::BY_MONTH  ? text.substr(0, MONTH_SIZE)
           : date->accuracy == DATE_ACCURACY::BY_YEAR ? text.substr(0, YEAR_SIZE)
                                                      : text;
  }
  return column.kind == COLUMN_KIND::TEXT || column.kind == COLUMN_KIND::FLAG ? cellText(cell, column) : text;
}

}  // namespace

void writeTableWorkbook(const Table& table, const table_part& part, const result_options& output) {
  const std::string file = qs_lib::homePath(output.file);
  refuseToOverwrite(file, output.overwrite);
  WorkbookWriter writer(file);
  std::vector<std::string> titles;
  std::vector<SHEET_COLUMN> kinds;
  for (const std::size_t which : part.columns) {
    titles.push_back(table.columns()[which].title);
    kinds.push_back(sheetColumn(table.columns()[which].kind));
  }
  writer.beginSheet("table", titles, std::move(kinds));
  for (const std::size_t row : part.rows) {
    std::vector<std::string> texts;
    for (const std::size_t which : part.columns) {
      texts.push_back(sheetText(table.cell(row, which), table.columns()[which]));
    }
    const std::vector<std::string_view> cells(texts.begin(), texts.end());
    writer.addRow(cells);
  }
  writer.finish();
}

}  // namespace spx::console
