#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "console/tables/csv_parser.h"
#include "console/tables/read_ahead.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// A CSV file, read row by row in constant memory.
///
/// The separator (comma, semicolon, TAB or "|") is the most frequent one of the header line outside
/// quotes, or the one that a first line such as `sep=;` names. Encodings: see TextReader. A byte-order
/// mark, CRLF, empty lines and rows of empty cells are tolerated; blanks
/// around a cell that is not quoted are dropped. A quote inside a cell must be doubled, and the
/// cell quoted: a table with stray quotes is refused, because everything after them would be a guess.
class CsvTable : public RowSource {
 public:
  /// Opens the file and reads its header line. Throws TableError.
  explicit CsvTable(const std::string& file, const text_encoding& encoding = {});

  bool next() override;
  std::size_t line() const override { return rows_.line(row_); }

 private:
  bool nextLine();

  CsvParser parser_;
  CsvRows rows_;
  std::size_t row_ = static_cast<std::size_t>(-1);
  std::optional<ReadAhead<CsvRows>> ahead_;
};

/// The table in a CSV file; a source without a table when the name is empty.
table_source csvSource(const std::string& file, const text_encoding& encoding = {});

}  // namespace spx::console
