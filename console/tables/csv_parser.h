#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console/tables/row_source.h"
#include "console/tables/text_encoding.h"

namespace spx::console {

/// Some rows of a CSV file, in their order, with the text that they lie in.
class CsvRows {
 public:
  std::size_t size() const { return rows_.size(); }
  /// The line in which the row begins, from 1.
  std::size_t line(std::size_t row) const { return rows_[row].line; }
  /// The cells of a row; valid as long as the rows.
  std::span<const std::string_view> operator[](std::size_t row) const {
    return {cells_.data() + rows_[row].first_cell, rows_[row].cells};
  }

  /// What is wrong with the next row; that row and those after it are not read.
  const std::optional<TableError>& failure() const { return failure_; }
  /// Whether no rows follow.
  bool isLast() const { return is_last_ || failure_; }

 private:
  friend class CsvParser;

  struct row_place {
    std::size_t line;
    std::size_t first_cell;
    std::size_t cells;
  };

  std::vector<char> text_;               ///< doubled quotes are made single in place
  std::vector<std::string_view> cells_;  ///< those after the last row belong to an incomplete one
  std::vector<row_place> rows_;
  std::optional<TableError> failure_;
  bool is_last_ = false;
};

/// Parses a CSV file piece by piece. CsvTable describes what it accepts.
class CsvParser {
 public:
  /// Throws TableError when the file cannot be opened.
  explicit CsvParser(const std::string& file, const text_encoding& encoding = {});

  /// The separator of a text that begins with the header line: that of the first line that has any,
  /// so lines of a single cell may stand before the header.
  static char separatorOf(std::string_view text);

  /// The rows that the next piece completes; empty only at the end. Not to be called after
  /// isLast(). Throws TableError when the file cannot be read.
  CsvRows nextRows();

 private:
  void readPiece();
  void begin(std::string_view& text);
  bool takeSeparatorLine(std::string_view& text);
  void parse(std::string_view text);
  bool readPlainLine(std::string_view& text, std::size_t quote);
  void addPlainCells(std::string_view line);
  std::string_view trimmed(std::string_view cell) const;
  bool readRow(std::string_view& text);
  bool readCell(std::string_view& rest);
  bool readQuotedCell(std::string_view& rest);
  void makeQuotesSingle(std::string_view& cell);
  void endRow();
  void fail(const std::string& reason) { rows_.failure_.emplace(line_, reason); }

  TextReader reader_;
  char separator_ = ',';
  CsvRows rows_;
  std::string begun_;     ///< the text after the last complete row
  std::size_t line_ = 1;  ///< where the next row begins
  bool first_ = true;
  bool at_end_ = false;  ///< the text is the rest of the file
};

}  // namespace spx::console
