#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace spx::console {

/// A table that cannot be read on: unreadable, no text, or with broken quotes.
class TableError : public std::runtime_error {
 public:
  TableError(std::size_t line, const std::string& reason)
      : std::runtime_error(reason), line_(line) {}
  /// The line, from 1, in which the row begins; 0 when it is the file as a whole.
  std::size_t line() const { return line_; }

 private:
  std::size_t line_;
};

/// A CSV file, read row by row in constant memory.
///
/// The separator (comma, semicolon, TAB or "|") is the most frequent one of the header line outside
/// quotes. A UTF-8 byte-order mark, CRLF, empty lines and rows of empty cells are tolerated; blanks
/// around a cell that is not quoted are dropped. A quote inside a cell must be doubled, and the
/// cell quoted: a table with stray quotes is refused, because all that follows would be guessed.
class CsvTable {
 public:
  /// Opens the file and reads its header line. Throws TableError.
  explicit CsvTable(const std::string& file);
  ~CsvTable();
  CsvTable(const CsvTable&) = delete;
  CsvTable& operator=(const CsvTable&) = delete;

  const std::vector<std::string>& titles() const { return titles_; }

  /// Goes to the next row. @return false at the end. Throws TableError.
  bool next();

  /// The line, from 1, in which the row begins.
  std::size_t line() const;
  std::size_t cells() const;
  /// A cell of the row, valid until next().
  std::string_view operator[](std::size_t cell) const;

 private:
  class Parser;
  bool isEmptyRow() const;

  std::unique_ptr<Parser> parser_;
  std::vector<std::string> titles_;
};

}  // namespace spx::console
