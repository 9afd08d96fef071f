// Tables for scripts.
#include <charconv>
#include <cmath>
#include <ostream>

#include <nlohmann/json.hpp>

#include "console/base/csv_cell.h"
#include "console/base/display_text.h"
#include "console/output/json_rows.h"
#include "console/output/table.h"

namespace spx::console {
namespace {

using json = fact_object;

std::string isoText(const known_date& date) {
  return qs_lib::julianToISO(qs_lib::dayToMs(date.day));
}

struct csv_appender {
  std::string& line;
  void operator()(std::monostate) const {}
  void operator()(const std::string& text) const { appendCsvCell(line, text); }
  void operator()(bool flag) const { line += flag ? "true" : "false"; }
  void operator()(const known_date& date) const { line += isoText(date); }
  template <typename Number>
  void operator()(Number number) const {
    char text[32];
    line.append(text, std::to_chars(text, std::end(text), number).ptr);
  }
};

struct json_maker {
  json operator()(std::monostate) const { return nullptr; }
  json operator()(const std::string& text) const { return utf8Text(text); }
  json operator()(const known_date& date) const { return isoText(date); }
  json operator()(double number) const { return std::isfinite(number) ? json(number) : json(nullptr); }
  template <typename Plain>
  json operator()(Plain value) const {
    return value;
  }
};

}  // namespace

fact_object rowObject(const Table& table, const table_part& part, std::size_t row) {
  json object = json::object();
  for (const std::size_t which : part.columns) {
    const table_column& column = table.columns()[which];
    json value = std::visit(json_maker{}, table.cell(row, which).get());
    if (column.group.empty()) {
      object[utf8Text(column.name)] = std::move(value);
    } else {
      object[column.group][utf8Text(column.key)] = std::move(value);
    }
  }
  return object;
}

void writeCsv(std::ostream& out, const Table& table, const table_part& part) {
  std::string line;
  const auto separate = [&line](bool is_first) { line += is_first ? "" : ","; };
  for (std::size_t i = 0; i < part.columns.size(); ++i) {
    separate(i == 0);
    appendCsvCell(line, table.columns()[part.columns[i]].name);
  }
  out << line << "\n";
  for (const std::size_t row : part.rows) {
    line.clear();
    for (std::size_t i = 0; i < part.columns.size(); ++i) {
      separate(i == 0);
      std::visit(csv_appender{line}, table.cell(row, part.columns[i]).get());
    }
    line += '\n';
    if (!out.write(line.data(), static_cast<std::streamsize>(line.size()))) {
      return;
    }
  }
}

void writeJson(std::ostream& out, const Table& table, const table_part& part) {
  if (table.is_record) {
    out << (part.rows.empty() ? "null" : rowObject(table, part, part.rows.front()).dump()) << "\n";
    return;
  }
  out << "[";
  const char* between = "\n";
  for (const std::size_t row : part.rows) {
    if (!(out << between << rowObject(table, part, row).dump())) {
      return;
    }
    between = ",\n";
  }
  out << (part.rows.empty() ? "]\n" : "\n]\n");
}

}  // namespace spx::console
