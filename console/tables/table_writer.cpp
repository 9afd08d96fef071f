#include "console/tables/table_writer.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <system_error>
#include <utility>

#include "console/base/csv_cell.h"
#include "console/base/display_text.h"
#include "console/base/failure.h"

namespace spx::console {
namespace {

constexpr std::string_view SEPARATORS = ";\t|";  // readers would count them in titles
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

bool isNumber(std::string_view text) {
  text.remove_prefix(text.starts_with('+') ? 1 : 0);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

[[noreturn]] void fail(const std::string& file) {
  throw Failure(file + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
}

}  // namespace

bool looksLikeFormula(std::string_view text) {
  constexpr std::string_view BEGINS = "=+-@\t\r";
  text.remove_prefix(std::min(text.find_first_not_of('\''), text.size()));
  return text.size() > 1 && BEGINS.find(text.front()) != std::string_view::npos && !isNumber(text);
}

TableWriter::TableWriter(std::string file, csv_form form) : name_(std::move(file)), form_(form) {
  file_.setFileName(name_);
  file_.setStaged(true);
  errno = 0;
  if (!file_.fileOpen()) {
    fail(name_);
  }
  if (form_.for_spreadsheet) {
    file_.write(BYTE_ORDER_MARK);
  }
}

void TableWriter::addTitles(std::span<const std::string> titles) {
  for (const std::string& title : titles) {
    if (&title != &titles.front()) {
      file_.write(separator());
    }
    addCell(title, SEPARATORS);
  }
  file_.write("\n");
}

void TableWriter::addRow(std::span<const std::string_view> cells) {
  for (const std::string_view& cell : cells) {
    if (&cell != &cells.front()) {
      file_.write(separator());
    }
    addCell(cell, separator());
  }
  file_.write("\n");
}

void TableWriter::finish() {
  errno = 0;
  if (!file_.fileClose()) {
    fail(name_);
  }
}

void TableWriter::addCell(std::string_view text, std::string_view quoted) {
  cell_.clear();
  const bool is_marked = (form_.for_spreadsheet || text.starts_with('\'')) && looksLikeFormula(text);
  if (is_marked || form_.for_spreadsheet) {
    appendCsvCell(cell_, (is_marked ? "'" : "") + (form_.for_spreadsheet ? utf8Text(text) : std::string(text)), quoted);
  } else {
    appendCsvCell(cell_, text, quoted);
  }
  file_.write(cell_);
}

}  // namespace spx::console
