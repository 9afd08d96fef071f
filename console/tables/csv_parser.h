#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <csv.h>

#include "console/tables/row_source.h"
#include "console/tables/text_encoding.h"

namespace spx::console {

/// Some rows of a CSV file, in their order.
class CsvRows {
 public:
  static constexpr std::size_t CHUNK = std::size_t{256} << 10;

  std::size_t size() const { return rows_.size(); }
  /// The line in which the row begins, from 1.
  std::size_t line(std::size_t row) const { return rows_[row].line; }
  /// The cells of a row; valid as long as the rows.
  std::span<const std::string_view> operator[](std::size_t row) const {
    return {texts_.data() + rows_[row].first_cell, rows_[row].cells};
  }

  /// What is wrong with the row that would come next; it and what follows are not read.
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
  // From CHUNK on, the place is one in the other text.
  struct cell_place {
    std::size_t begin;
    std::size_t size;
  };

  void settle();
  std::string_view textOf(const cell_place& place) const {
    return place.begin < CHUNK ? std::string_view(chunk_.data() + place.begin, place.size)
                               : std::string_view(other_.data() + (place.begin - CHUNK), place.size);
  }
  std::size_t begunCell() const { return rows_.empty() ? 0 : rows_.back().first_cell + rows_.back().cells; }
  void addCell(std::string_view text) {
    cells_.push_back({CHUNK + other_.size(), text.size()});
    other_.insert(other_.end(), text.begin(), text.end());
  }

  std::vector<char> chunk_;              ///< as it was read: cells without quotes lie in it
  std::vector<char> other_;              ///< the cells that do not
  std::vector<cell_place> cells_;        ///< those after the last row belong to a begun one
  std::vector<std::string_view> texts_;  ///< the same, once the other texts stay where they are
  std::vector<row_place> rows_;
  std::optional<TableError> failure_;
  bool is_last_ = false;
};

/// Takes a CSV file apart, a chunk at a time. What it understands is said at CsvTable.
class CsvParser {
 public:
  /// Throws TableError when the file cannot be opened.
  explicit CsvParser(const std::string& file, const text_encoding& encoding = {});
  CsvParser(const CsvParser&) = delete;
  CsvParser& operator=(const CsvParser&) = delete;
  ~CsvParser();

  /// The separator that a text which begins with the header line has, or with lines of a single cell
  /// before it: that of the first line that has any.
  static char separatorOf(std::string_view text);

  /// The rows that the next chunks complete; none only at the end. Not to be called after the last.
  CsvRows nextRows();

 private:
  void readChunk();
  void begin(std::string_view& chunk);
  bool takeSeparatorLine(std::string_view& chunk);
  void parse(std::string_view chunk);
  bool isBetweenRows() const { return csv_.pstate == 0; }
  void readPlainLines(std::string_view& text, std::string_view plain);
  void addPlainCells(std::string_view line);
  std::string_view trimmed(std::string_view cell) const;
  void parseLine(std::string_view& text);
  void finish();
  void failInCsv();
  void fail(std::size_t line, const std::string& reason) { rows_.failure_.emplace(line, reason); }
  bool isInRow() const { return rows_.cells_.size() > rows_.begunCell(); }
  std::size_t rowLine() const { return isInRow() ? row_line_ : line_; }
  void addCell(std::string_view cell);
  void endLine(int letter);
  static void onCell(void* cell, std::size_t size, void* parser);
  static void onRow(int letter, void* parser);

  text_file file_;
  csv_parser csv_{};
  char separator_ = ',';
  CsvRows rows_;
  std::size_t line_ = 1;
  std::size_t row_line_ = 1;
  bool after_return_ = false;
  bool first_ = true;
  bool out_of_memory_ = false;
};

}  // namespace spx::console
