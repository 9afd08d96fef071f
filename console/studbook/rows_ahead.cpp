#include "console/studbook/rows_ahead.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "console/tables/read_ahead.h"

namespace spx::console {
namespace {

/// A batch of rows of a table, with copies of their texts.
class RowCopies {
 public:
  /// Takes rows until the batch is full; an error in the next row is kept and thrown when that row's turn comes.
  explicit RowCopies(RowSource& source) {
    try {
      while (rows_.size() < MOST_ROWS && texts_.size() < MOST_TEXT && !is_last_) {
        is_last_ = !source.next();
        if (!is_last_) {
          add(source);
        }
      }
    } catch (const TableError& error) {
      failure_ = error;
    }
    settle();
  }

  std::size_t size() const { return rows_.size(); }
  std::size_t line(std::size_t row) const { return rows_[row].line; }
  std::size_t animalRow(std::size_t row) const { return rows_[row].animal_row; }
  std::span<const std::string_view> cells(std::size_t row) const {
    return std::span(cells_).subspan(rows_[row].first_cell, rows_[row].cells);
  }

  /// Whether nothing can follow: the table ends here, or what comes next failed.
  bool isLast() const { return is_last_ || failure_; }
  const std::optional<TableError>& failure() const { return failure_; }

 private:
  static constexpr std::size_t MOST_ROWS = 4096;
  static constexpr std::size_t MOST_TEXT = std::size_t{1} << 20;

  struct row_place {
    std::size_t line;
    std::size_t animal_row;
    std::size_t first_cell;
    std::size_t cells;
  };

  void add(const RowSource& source) {
    rows_.push_back({source.line(), source.animalRow(), ends_.size(), source.cells()});
    const std::size_t begin = texts_.size();
    std::size_t end = begin;
    for (const std::string_view cell : source.row()) {
      end += cell.size();
      ends_.push_back(end);
    }
    texts_.resize(end);
    char* to = texts_.data() + begin;
    for (const std::string_view cell : source.row()) {
      to = std::copy(cell.begin(), cell.end(), to);
    }
  }

  /// Makes the views of the cells. The texts do not move any more, even when the batch is moved.
  void settle() {
    cells_.reserve(ends_.size());
    std::size_t begin = 0;
    for (const std::size_t end : ends_) {
      cells_.emplace_back(texts_.data() + begin, end - begin);
      begin = end;
    }
  }

  std::vector<char> texts_;
  std::vector<std::size_t> ends_;
  std::vector<std::string_view> cells_;
  std::vector<row_place> rows_;
  bool is_last_ = false;
  std::optional<TableError> failure_;
};

class RowsAhead : public RowSource {
 public:
  explicit RowsAhead(std::unique_ptr<RowSource> rows) : rows_(std::move(rows)) {
    titles_ = rows_->titles();
    fields_ = rows_->fields();
  }

  bool next() override {
    if (!copies_) {
      copies_.emplace(*rows_);
    }
    while (++row_ >= copies_->size()) {
      if (copies_->failure()) {
        throw TableError(*copies_->failure());
      }
      if (copies_->isLast()) {
        return false;
      }
      if (!ahead_) {
        ahead_.emplace([this] { return RowCopies(*rows_); });
      }
      copies_.emplace(ahead_->take());
      row_ = static_cast<std::size_t>(-1);
    }
    cells_ = copies_->cells(row_);
    return true;
  }

  std::size_t line() const override { return copies_->line(row_); }
  std::size_t animalRow() const override { return copies_->animalRow(row_); }

 private:
  std::unique_ptr<RowSource> rows_;
  std::optional<RowCopies> copies_;
  std::size_t row_ = static_cast<std::size_t>(-1);
  std::optional<ReadAhead<RowCopies>> ahead_;
};

}  // namespace

std::unique_ptr<RowSource> readAhead(std::unique_ptr<RowSource> rows) {
  return std::make_unique<RowsAhead>(std::move(rows));
}

}  // namespace spx::console
