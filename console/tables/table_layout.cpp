#include "console/tables/table_layout.h"

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "spx/support/text.h"

#include "console/base/quoted_text.h"
#include "console/tables/folded_text.h"

namespace spx::console {
namespace {

constexpr std::size_t LINES_BEFORE_TITLES = 20;

constexpr std::string_view FOOTER_WORDS[] = {"total",   "totals", "grand total", "sum",    "subtotal",  "count",
                                             "average", "mean",   "summe",       "gesamt", "insgesamt", "anzahl",
                                             "somme",   "suma",   "note",        "notes",  "source",    "printed",
                                             "end of",  "quelle", "stand"};

/// Whether the text is one of the words, alone or before a blank, a colon or an equals sign, or a
/// footnote that begins with a star.
bool isFooter(std::string_view text) {
  constexpr std::size_t LONGEST_WORD = 12;
  constexpr std::string_view ENDS = " :=";
  if (text.starts_with('*')) {
    return true;
  }
  const std::string folded = foldedText(text.substr(0, LONGEST_WORD));
  return std::any_of(std::begin(FOOTER_WORDS), std::end(FOOTER_WORDS), [&](std::string_view word) {
    return folded.starts_with(word) &&
           (folded.size() == word.size() || ENDS.find(folded[word.size()]) != std::string_view::npos);
  });
}

/// One of the words alone, as an ID: no animal is called so.
bool isFooterId(std::string_view text) {
  const std::string folded = foldedText(text.substr(0, text.ends_with(':') ? text.size() - 1 : text.size()));
  return std::find(std::begin(FOOTER_WORDS), std::end(FOOTER_WORDS), folded) != std::end(FOOTER_WORDS);
}

std::size_t filledCells(std::span<const std::string_view> cells) {
  return static_cast<std::size_t>(std::count_if(cells.begin(), cells.end(), [](auto cell) { return !cell.empty(); }));
}

class TableLayout : public RowSource {
 public:
  TableLayout(std::unique_ptr<RowSource> rows, std::span<const table_field> fields,
              std::span<const title_choice> choices, FOOTER footer, TableNotes& notes)
      : rows_(std::move(rows)), footer_(footer), notes_(notes) {
    titles_ = rows_->titles();
    fields_ = rows_->fields();
    const std::vector<std::string_view> first(titles_.begin(), titles_.end());
    const std::size_t known = knownTitles(titles_, fields, choices);
    // A single known title may be the heading of the whole sheet.
    if (fields_.empty() && (known == 0 || filledCells(first) == 1)) {
      findTitles(known, fields, choices);
    }
  }

  void settleColumns(std::span<const table_field> fields, const ColumnTitles& columns) override {
    rows_->settleColumns(fields, columns);
    for (std::size_t field = 0; field < fields.size(); ++field) {
      const std::size_t column = columns.column(field);
      if (column == ColumnTitles::NONE) {
        continue;
      }
      if (fields[field].name == "id") {
        id_ = column;
      } else {
        other_fields_.push_back(column);
      }
    }
  }

  bool next() override {
    while (nextRow()) {
      if (footer_ == FOOTER::KEEP || !isFooterRow()) {
        return true;
      }
      if (footer_ == FOOTER::ASK) {
        throw TableError(line(), quotedText(footerText()) +
                                     " looks like a footer; use --footer skip to leave such lines out, or --footer "
                                     "keep to read them as animals");
      }
      notes_.add("line " + std::to_string(line()) + " is skipped: " + quotedText(footerText()));
    }
    return false;
  }

  std::size_t line() const override { return replayed_ ? kept_.front().line : rows_->line(); }
  std::size_t animalRow() const override { return rows_->animalRow(); }

 private:
  struct kept_row {
    std::size_t line;
    std::vector<std::string> cells;
  };

  void findTitles(std::size_t known, std::span<const table_field> fields, std::span<const title_choice> choices) {
    std::size_t best = kept_.size();
    while (kept_.size() < LINES_BEFORE_TITLES && rows_->next()) {
      kept_.push_back({rows_->line(), {rows_->row().begin(), rows_->row().end()}});
      const std::size_t here = knownTitles(kept_.back().cells, fields, choices);
      if (here > known) {
        known = here;
        best = kept_.size();
      }
    }
    if (best == 0) {
      return;
    }
    titles_ = kept_[best - 1].cells;
    while (!titles_.empty() && titles_.back().empty()) {
      titles_.pop_back();
    }
    for (std::string& title : titles_) {
      title = qs_lib::allTrim(title);
    }
    notes_.add("the titles are in line " + std::to_string(kept_[best - 1].line) + "; the lines above are ignored");
    kept_.erase(kept_.begin(), kept_.begin() + static_cast<std::ptrdiff_t>(best));
    has_moved_ = true;
  }

  /// Goes to the next row, first through those that were read during the search for the titles.
  bool nextRow() {
    if (replayed_) {
      kept_.pop_front();
    }
    replayed_ = !kept_.empty();
    if (replayed_) {
      row_.assign(kept_.front().cells.begin(), kept_.front().cells.end());
    } else if (rows_->next()) {
      if (!has_moved_) {
        cells_ = rows_->row();
        return true;
      }
      row_.assign(rows_->row().begin(), rows_->row().end());
    } else {
      return false;
    }
    if (has_moved_) {
      fitRow();
    }
    cells_ = row_;
    return true;
  }

  /// Rows are as wide as the first line of the file; adds or removes empty cells to fit the titles.
  void fitRow() {
    while (row_.size() > titles_.size() && row_.back().empty()) {
      row_.pop_back();
    }
    row_.resize(std::max(row_.size(), titles_.size()));
  }

  bool isFooterRow() const {
    if (id_ >= cells_.size()) {
      return false;
    }
    const auto is_empty = [&](std::size_t column) {
      return column >= cells_.size() || cells_[column].empty() || isFirstCell(column);
    };
    return isFooterId(cells_[id_]) ||
           (std::all_of(other_fields_.begin(), other_fields_.end(), is_empty) && isFooter(footerText()));
  }

  bool isFirstCell(std::size_t column) const { return cells_[id_].empty() && cells_[column] == footerText(); }

  /// The ID, or the first cell of a row without one.
  std::string_view footerText() const {
    if (!cells_[id_].empty()) {
      return cells_[id_];
    }
    const auto first = std::find_if(cells_.begin(), cells_.end(), [](auto cell) { return !cell.empty(); });
    return first == cells_.end() ? std::string_view() : *first;
  }

  std::unique_ptr<RowSource> rows_;
  FOOTER footer_;
  TableNotes& notes_;
  std::deque<kept_row> kept_;  ///< rows below the titles that have already been read
  bool replayed_ = false;      ///< whether the current row is the first of them
  bool has_moved_ = false;     ///< whether the titles are not in the first line
  std::vector<std::string_view> row_;
  std::size_t id_ = ColumnTitles::NONE;
  std::vector<std::size_t> other_fields_;  ///< their columns
};

}  // namespace

std::unique_ptr<RowSource> settleLayout(std::unique_ptr<RowSource> rows, std::span<const table_field> fields,
                                        std::span<const title_choice> choices, const reading_options& options,
                                        TableNotes& notes) {
  return std::make_unique<TableLayout>(std::move(rows), fields, choices, options.footer, notes);
}

}  // namespace spx::console
