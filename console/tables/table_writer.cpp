#include "console/tables/table_writer.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "console/base/failure.h"

namespace spx::console {
namespace {

constexpr std::string_view SPECIAL = ",\"\r\n";
constexpr std::string_view SPECIAL_IN_TITLES = ",\"\r\n;\t|";  // readers count separators there
constexpr std::string_view BLANKS = " \t";

bool needsQuotes(std::string_view text, std::string_view special) {
  if (text.empty()) {
    return false;
  }
  return text.find_first_of(special) != std::string_view::npos || BLANKS.find(text.front()) != std::string_view::npos ||
         BLANKS.find(text.back()) != std::string_view::npos;
}

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
    addCell(title, SPECIAL_IN_TITLES);
  }
  file_.write("\n");
}

void TableWriter::addRow(std::span<const std::string_view> cells) {
  for (const std::string_view& cell : cells) {
    if (&cell != &cells.front()) {
      file_.write(",");
    }
    addCell(cell, SPECIAL);
  }
  file_.write("\n");
}

void TableWriter::finish() {
  errno = 0;
  if (!file_.fileClose()) {
    fail(name_);
  }
}

void TableWriter::addCell(std::string_view text, std::string_view special) {
  if (!needsQuotes(text, special)) {
    return file_.write(text);
  }
  file_.write("\"");
  for (std::size_t quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"')) {
    file_.write(text.substr(0, quote + 1));
    file_.write("\"");
    text.remove_prefix(quote + 1);
  }
  file_.write(text);
  file_.write("\"");
}

}  // namespace spx::console
