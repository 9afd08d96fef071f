#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace spx::console {

/// The texts of the cells of a workbook while it is read. Rows and columns are counted from 0. Throws Failure for cells
/// outside the largest sheet that spreadsheets have, and for too many of them.
class SheetCells {
 public:
  static constexpr std::size_t MOST_ROWS = 1048576;
  static constexpr std::size_t MOST_COLUMNS = 16384;

  /// Keeps a text that cells can share. @return its number
  std::size_t keepText(std::string text);

  /// The cells that follow belong to this sheet.
  void beginSheet(std::string name);

  /// Drops the sheet with its cells.
  void dropSheet() { sheets_.pop_back(); }

  /// Gives a cell of the last sheet a text; the last one counts.
  void set(std::size_t row, std::size_t column, std::size_t kept_text);

  /// The cells of a column that are merged: all of them have the value of the first.
  void merge(std::size_t first_row, std::size_t last_row, std::size_t column);

  /// Makes so many more rows of the last row of the sheet.
  void repeatRow(std::size_t row, std::size_t more);

  /// Writes all sheets as writeWorkbookCells does.
  void write(const std::function<void(std::string_view)>& output);

 private:
  struct cell {
    std::uint32_t row;
    std::uint32_t column;
    std::uint32_t text;
  };
  struct merged_cells {
    std::uint32_t first_row;
    std::uint32_t last_row;
    std::uint32_t column;
  };
  struct sheet {
    std::string name;
    std::vector<cell> cells;
    std::vector<merged_cells> merged;
  };

  static bool isBefore(const cell& a, const cell& b);
  void settle(sheet& last);
  void writeRows(const sheet& from, const std::function<void(std::string_view)>& output);
  void count(std::size_t cells);
  void addNumber(std::size_t number);
  void addText(std::string_view text);

  std::deque<std::string> texts_;
  std::vector<sheet> sheets_;
  std::size_t count_ = 0;
  std::string bytes_;
};

}  // namespace spx::console
