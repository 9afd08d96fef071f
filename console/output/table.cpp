#include "console/output/table.h"

#include <charconv>
#include <cmath>
#include <numeric>
#include <utility>

#include "console/base/display_text.h"

namespace spx::console {
namespace {

constexpr std::uint64_t LONGEST_MONTH = 31;

/// Shortens a range to what fits into a column: about a day, about a month ("~Jul 1981"), or about a year.
known_date inColumn(known_date date) {
  constexpr std::uint64_t HALF_A_YEAR = 183;
  if (date.accuracy == DATE_ACCURACY::DATE_RANGE) {
    date.accuracy = date.range < LONGEST_MONTH ? DATE_ACCURACY::BY_WEEK
                    : date.range < HALF_A_YEAR ? DATE_ACCURACY::BY_MONTH
                                               : DATE_ACCURACY::BY_YEAR;
  }
  return date;
}

std::string realText(double number, int decimals) {
  char text[400];  // the largest double has 309 digits before the point
  const auto end = std::to_chars(text, std::end(text), number, std::chars_format::fixed, decimals).ptr;
  std::string shown(text, end);
  const bool is_zero = shown.find_first_not_of("-0.") == std::string::npos;
  return is_zero && shown.front() == '-' ? shown.substr(1) : shown;
}

}  // namespace

void Cell::setReal(double number) {
  if (!std::isnan(number)) {
    value_ = number;
  }
}

void Cell::setReal(float number) {
  char text[32];
  const auto end = std::to_chars(text, std::end(text), number).ptr;
  double exact = number;
  std::from_chars(text, end, exact);
  setReal(exact);
}

void Table::addRow(std::vector<Cell> cells) {
  cells_.push_back(std::move(cells));
  count_ = cells_.size();
}

void Table::setRows(std::size_t count, std::function<Cell(std::size_t, std::size_t)> read) {
  count_ = count;
  read_ = std::move(read);
}

Cell Table::cell(std::size_t row, std::size_t column) const {
  if (read_) {
    return read_(row, column);
  }
  const std::vector<Cell>& cells = cells_[row];
  return column < cells.size() ? cells[column] : Cell();
}

table_part wholeTable(const Table& table, OUTPUT_FORMAT format) {
  table_part part;
  for (std::size_t column = 0; column < table.columns().size(); ++column) {
    if (format != OUTPUT_FORMAT::TEXT || table.columns()[column].in_text) {
      part.columns.push_back(column);
    }
  }
  part.rows.resize(table.rows());
  std::iota(part.rows.begin(), part.rows.end(), std::size_t{0});
  return part;
}

std::string cellText(const Cell& cell, const table_column& column) {
  struct {
    const table_column& column;
    std::string operator()(std::monostate) const {
      const bool is_number = column.kind == COLUMN_KIND::INTEGER || column.kind == COLUMN_KIND::REAL ||
                             column.kind == COLUMN_KIND::PERCENT;
      return is_number ? "-" : "";
    }
    std::string operator()(const std::string& text) const {
      return visibleText(column.shown == nullptr ? text : column.shown(text));
    }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const {
      return column.kind == COLUMN_KIND::PERCENT ? realText(100 * number, column.decimals) + " %"
                                                 : realText(number, column.decimals);
    }
    std::string operator()(const known_date& date) const {
      const bool is_about_more = date.accuracy == DATE_ACCURACY::DATE_RANGE && date.range >= LONGEST_MONTH;
      return (is_about_more ? "~" : "") + dateText(inColumn(date));
    }
    std::string operator()(bool flag) const { return flag ? "yes" : "no"; }
  } const show{column};
  return std::visit(show, cell.get());
}

}  // namespace spx::console
