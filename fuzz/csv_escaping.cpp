// Tables written and read back: the first line names the columns, every other line is a cell.
#include "spx/support/csv_report.h"
#include "spx/support/tokenizer.h"

#include "fuzz/csv_reader.h"
#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

constexpr char SEPARATORS[] = {'|', '\t', ',', ';'};

qs_lib::CsvReport& openTable(qs_lib::CsvReport& table, char separator) {
  table.setFileName(ramDirectory() + "/table.csv");
  table.separator = separator;
  require(table.fileOpen(), "a table cannot be opened");
  return table;
}

/// Fills rows of that many columns; the last one is filled up with empty cells.
std::vector<csv_row> rowsOf(const std::vector<std::string>& lines, std::size_t columns) {
  std::vector<csv_row> rows;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if ((i - 1) % columns == 0) {
      rows.emplace_back();
    }
    rows.back().push_back(lines[i]);
  }
  if (!rows.empty()) {
    rows.back().resize(columns);
  }
  return rows;
}

void tryDeclared(const std::vector<std::string>& lines, char separator) {
  const csv_row header = qs_lib::Tokenizer(lines[0], "|").tokens();
  if (header.empty()) {
    return;
  }
  std::vector<csv_row> rows = rowsOf(lines, header.size());
  qs_lib::CsvReport table;
  openTable(table, separator).writeHeader(lines[0]);
  for (const csv_row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      table.cell(row[i], i + 1 < row.size());
    }
    table.write("\n");
  }
  require(table.fileClose(), "a table is not written");
  rows.insert(rows.begin(), header);
  require(readCsv(contentOf(table.getFileName()), separator) == rows, "cells come back changed");
}

/// Without a header the caller writes the separators.
void tryFree(const std::vector<std::string>& lines, char separator) {
  qs_lib::CsvReport table;
  openTable(table, separator);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    table.write(i == 0 ? std::string() : std::string(1, separator));
    table.cell(lines[i], true);
  }
  table.write("\n");
  require(table.fileClose(), "a free table is not written");
  require(readCsv(contentOf(table.getFileName()), separator) == std::vector<csv_row>{lines},
          "free cells come back changed");
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  const std::vector<std::string> lines = linesOf(asText(data, size));
  const char separator = SEPARATORS[size % std::size(SEPARATORS)];
  tryDeclared(lines, separator);
  tryFree(lines, separator);
  return 0;
}
