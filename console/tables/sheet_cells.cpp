#include "console/tables/sheet_cells.h"

#include <algorithm>
#include <utility>

#include "console/base/failure.h"

namespace spx::console {
namespace {

constexpr std::size_t MOST_CELLS = 50'000'000;

}  // namespace

std::size_t SheetCells::keepText(std::string text) {
  texts_.push_back(std::move(text));
  return texts_.size() - 1;
}

void SheetCells::beginSheet(std::string name) {
  sheets_.push_back({std::move(name), {}, {}});
}

void SheetCells::set(std::size_t row, std::size_t column, std::size_t kept_text) {
  if (row >= MOST_ROWS || column >= MOST_COLUMNS) {
    throw Failure("is damaged: a cell lies outside its sheet");
  }
  count(1);
  sheets_.back().cells.push_back(
      {static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column), static_cast<std::uint32_t>(kept_text)});
}

void SheetCells::merge(std::size_t first_row, std::size_t last_row, std::size_t column) {
  if (first_row < last_row && last_row < MOST_ROWS && column < MOST_COLUMNS) {
    sheets_.back().merged.push_back({static_cast<std::uint32_t>(first_row), static_cast<std::uint32_t>(last_row),
                                     static_cast<std::uint32_t>(column)});
  }
}

void SheetCells::repeatRow(std::size_t row, std::size_t more) {
  const std::vector<cell>& cells = sheets_.back().cells;
  std::size_t first = cells.size();
  while (first > 0 && cells[first - 1].row == row) {
    --first;
  }
  const std::size_t last = cells.size();
  for (std::size_t next = 1; first < last && next <= more; ++next) {
    for (std::size_t each = first; each < last; ++each) {
      set(row + next, cells[each].column, cells[each].text);
    }
  }
}

void SheetCells::write(const std::function<void(std::string_view)>& output) {
  count_ = 0;
  for (sheet& each : sheets_) {
    bytes_ += 'S';
    addText(each.name);
    settle(each);
    writeRows(each, output);
    each = {};
  }
  bytes_ += 'E';
  output(bytes_);
}

bool SheetCells::isBefore(const cell& a, const cell& b) {
  return a.row != b.row ? a.row < b.row : a.column < b.column;
}

/// Puts the cells in order, those that are merged with the value of the first.
void SheetCells::settle(sheet& last) {
  std::vector<cell>& cells = last.cells;
  std::stable_sort(cells.begin(), cells.end(), isBefore);
  const std::size_t own = cells.size();
  for (const merged_cells& range : last.merged) {
    const cell wanted = {range.first_row, range.column, 0};
    const auto end = cells.begin() + static_cast<std::ptrdiff_t>(own);
    const auto first = std::lower_bound(cells.begin(), end, wanted, isBefore);
    if (first == end || isBefore(wanted, *first)) {
      continue;
    }
    const std::uint32_t text = first->text;
    count(range.last_row - range.first_row);
    for (std::uint32_t row = range.first_row + 1; row <= range.last_row; ++row) {
      cells.push_back({row, range.column, text});
    }
  }
  if (cells.size() != own) {
    std::stable_sort(cells.begin(), cells.end(), isBefore);
  }
}

void SheetCells::writeRows(const sheet& from, const std::function<void(std::string_view)>& output) {
  constexpr std::size_t PART = std::size_t{1} << 16;
  const std::vector<cell>& cells = from.cells;
  std::vector<std::string_view> row;
  for (std::size_t begin = 0, end = 0; begin < cells.size(); begin = end) {
    row.clear();
    for (end = begin; end < cells.size() && cells[end].row == cells[begin].row; ++end) {
      row.resize(std::size_t{cells[end].column} + 1);
      row.back() = texts_[cells[end].text];
    }
    if (std::all_of(row.begin(), row.end(), [](std::string_view text) { return text.empty(); })) {
      continue;
    }
    count(row.size());
    bytes_ += 'R';
    addNumber(std::size_t{cells[begin].row} + 1);
    addNumber(row.size());
    for (const std::string_view text : row) {
      addText(text);
    }
    if (bytes_.size() > PART) {
      output(bytes_);
      bytes_.clear();
    }
  }
}

void SheetCells::count(std::size_t cells) {
  count_ += cells;
  if (count_ > MOST_CELLS) {
    throw Failure("the workbook has more than 50 million cells");
  }
}

void SheetCells::addNumber(std::size_t number) {
  for (int shift = 0; shift < 32; shift += 8) {
    bytes_ += static_cast<char>(number >> shift);
  }
}

void SheetCells::addText(std::string_view text) {
  addNumber(text.size());
  bytes_ += text;
}

}  // namespace spx::console
