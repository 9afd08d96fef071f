#include "console/charts/table_values.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "spx/support/julian_date.h"

namespace spx::console {
namespace {

std::size_t placeOf(const Table& table, const std::string& column) {
  const auto& columns = table.columns();
  const auto found =
      std::find_if(columns.begin(), columns.end(), [&column](const table_column& each) { return each.name == column; });
  if (found == columns.end()) {
    throw std::logic_error("a table without the column " + column);
  }
  return static_cast<std::size_t>(found - columns.begin());
}

template <class Value, class Read>
std::vector<Value> read(const Table& table, const std::string& column, Read value) {
  const std::size_t place = placeOf(table, column);
  std::vector<Value> values;
  values.reserve(table.rows());
  for (std::size_t row = 0; row < table.rows(); ++row) {
    values.push_back(value(table.cell(row, place), table.columns()[place]));
  }
  return values;
}

double number(const Cell& cell) {
  if (const auto* real = std::get_if<double>(&cell.get())) {
    return *real;
  }
  if (const auto* whole = std::get_if<std::int64_t>(&cell.get())) {
    return static_cast<double>(*whole);
  }
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

std::vector<double> numbersOf(const Table& table, const std::string& column) {
  return read<double>(table, column, [](const Cell& cell, const table_column&) { return number(cell); });
}

std::vector<std::string> textsOf(const Table& table, const std::string& column) {
  return read<std::string>(table, column, [](const Cell& cell, const table_column& of) { return cellText(cell, of); });
}

std::vector<std::string> yearsOf(const Table& table, const std::string& column) {
  return read<std::string>(table, column, [](const Cell& cell, const table_column&) {
    const auto* date = std::get_if<known_date>(&cell.get());
    return date == nullptr ? std::string("?") : std::to_string(qs_lib::civilFromDay(date->day).year);
  });
}

}  // namespace spx::console
