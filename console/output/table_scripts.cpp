// Tables for scripts.
#include <charconv>
#include <cmath>
#include <ostream>

#include <nlohmann/json.hpp>

#include "console/base/csv_cell.h"
#include "console/base/display_text.h"
#include "console/output/json_rows.h"
#include "console/output/table.h"
#include "console/tables/table_writer.h"

namespace spx::console {
namespace {

using json = fact_object;

std::string isoText(const known_date& date) {
  return qs_lib::julianToISO(qs_lib::dayToMs(date.day));
}

struct text_maker {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(bool flag) const { return flag ? "true" : "false"; }
  std::string operator()(const known_date& date) const { return isoText(date); }
  template <typename Number>
  std::string operator()(Number number) const {
    char text[32];
    return {text, std::to_chars(text, std::end(text), number).ptr};
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

std::string scriptText(const Cell& cell) {
  return std::visit(text_maker{}, cell.get());
}

void writeCsv(std::ostream& out, const Table& table, const table_part& part, bool for_spreadsheet) {
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
      const Cell cell = table.cell(row, part.columns[i]);
      const auto* text = std::get_if<std::string>(&cell.get());
      const bool is_guarded = for_spreadsheet && text != nullptr && looksLikeFormula(*text);
      appendCsvCell(line, (is_guarded ? "'" : "") + scriptText(cell));
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
