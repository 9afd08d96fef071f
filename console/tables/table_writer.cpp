#include "console/tables/table_writer.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "console/base/csv_cell.h"
#include "console/base/failure.h"

namespace spx::console {
namespace {

constexpr std::string_view SEPARATORS = ";\t|";  // readers count them in titles

[[noreturn]] void fail(const std::string& file) {
  throw Failure(file + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
}

}  // namespace

TableWriter::TableWriter(std::string file) : name_(std::move(file)) {
  file_.setFileName(name_);
  file_.setStaged(true);
  errno = 0;
  if (!file_.fileOpen()) {
    fail(name_);
  }
}

void TableWriter::addTitles(std::span<const std::string> titles) {
  for (const std::string& title : titles) {
    if (&title != &titles.front()) {
      file_.write(",");
    }
    addCell(title, SEPARATORS);
  }
  file_.write("\n");
}

void TableWriter::addRow(std::span<const std::string_view> cells) {
  for (const std::string_view& cell : cells) {
    if (&cell != &cells.front()) {
      file_.write(",");
    }
    addCell(cell, {});
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
  appendCsvCell(cell_, text, quoted);
  file_.write(cell_);
}

}  // namespace spx::console
