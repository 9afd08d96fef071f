#include "console/output/record_stream.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "console/base/csv_cell.h"
#include "console/base/display_text.h"

namespace spx::console {
namespace {

using error_handler = nlohmann::detail::error_handler_t;

constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";  // replaces bytes that are not UTF-8
constexpr char USER_FIELDS[] = "user_fields";

std::string dumped(const fact_record& value, error_handler faulty_bytes) {
  return value.dump(-1, ' ', false, faulty_bytes);
}

fact_record utf8Value(const fact_record& value) {
  if (value.is_string()) {
    return utf8Text(value.get_ref<const std::string&>());
  }
  if (!value.is_structured()) {
    return value;
  }
  fact_record converted = value.is_array() ? fact_record::array() : fact_record::object();
  for (const auto& [name, part] : value.items()) {
    if (value.is_array()) {
      converted.push_back(utf8Value(part));
    } else {
      converted[utf8Text(name)] = utf8Value(part);
    }
  }
  return converted;
}

std::string jsonText(const fact_record& record) {
  std::string text = dumped(record, error_handler::replace);
  if (text.find(REPLACEMENT) == std::string::npos) {
    return text;
  }
  return dumped(utf8Value(record), error_handler::replace);
}

std::string nameBelow(const std::string& name, const std::string& part) {
  return name + "_" + part;
}

void addNames(std::vector<std::string>& names, const std::string& name, const fact_record& value) {
  if (!value.is_structured()) {
    names.push_back(name);
    return;
  }
  std::size_t number = 0;
  for (const auto& [key, part] : value.items()) {
    const std::string tail = value.is_array() ? std::to_string(++number) : key;
    addNames(names, name.empty() ? tail : nameBelow(name, tail), part);
  }
}

std::vector<std::string> columnNames(const fact_record& shape) {
  std::vector<std::string> names;
  for (const auto& [name, value] : shape.items()) {
    if (name != USER_FIELDS) {
      addNames(names, name, value);
    }
  }
  const std::vector<std::string> fixed = names;
  if (!shape.contains(USER_FIELDS)) {
    return names;
  }
  for (const auto& [title, value] : shape[USER_FIELDS].items()) {
    const bool is_taken = std::find(fixed.begin(), fixed.end(), title) != fixed.end();
    names.push_back(is_taken ? std::string(USER_FIELDS) + "_" + title : title);
  }
  return names;
}

/// Adds a cell and a comma.
void addCell(std::string& line, std::string_view text) {
  appendCsvCell(line, text);
  line += ',';
}

/// The shortest text that is read as the same number.
template <typename Number>
void addNumber(std::string& line, Number number) {
  char text[32];
  line.append(text, std::to_chars(text, std::end(text), number).ptr);
  line += ',';
}

void addCells(std::string& line, const fact_record& value) {
  if (value.is_structured()) {
    for (const fact_record& part : value) {
      addCells(line, part);
    }
  } else if (value.is_string()) {
    addCell(line, value.get_ref<const std::string&>());
  } else if (value.is_number_float()) {
    addNumber(line, value.get<double>());
  } else if (value.is_number_unsigned()) {
    addNumber(line, value.get<std::uint64_t>());
  } else {
    addCell(line, value.is_null() ? "" : value.dump());
  }
}

void writeLine(std::ostream& out, std::string& line) {
  line.back() = '\n';  // in place of the last comma
  out << line;
}

}  // namespace

RecordStream::RecordStream(std::ostream& out, OUTPUT_FORMAT format, const fact_record& shape)
    : out_(out), is_json_(format == OUTPUT_FORMAT::JSON) {
  if (is_json_) {
    out_ << "[";
    return;
  }
  std::string line;
  for (const std::string& name : columnNames(shape)) {
    addCell(line, name);
  }
  writeLine(out_, line);
}

void RecordStream::write(const fact_record& record) {
  if (is_json_) {
    out_ << (written_ == 0 ? "\n" : ",\n") << jsonText(record);
  } else {
    std::string line;
    addCells(line, record);
    writeLine(out_, line);
  }
  ++written_;
}

void RecordStream::end() {
  if (is_json_) {
    out_ << (written_ == 0 ? "]\n" : "\n]\n");
  }
}

void writeRecord(std::ostream& out, OUTPUT_FORMAT format, const fact_record& record) {
  if (format == OUTPUT_FORMAT::JSON) {
    out << jsonText(record) << "\n";
  } else {
    RecordStream(out, format, record).write(record);
  }
}

}  // namespace spx::console
