#include "console/tables/workbook.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "spx/support/text.h"

#include "console/base/failure.h"
#include "console/base/isolated_run.h"
#include "console/tables/workbook_cells.h"

namespace spx::console {
namespace {

constexpr std::size_t MIB = std::size_t{1} << 20;
constexpr std::string_view ZIP_BEGIN = "PK\x03\x04";
constexpr std::string_view OLD_BEGIN = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";

/// A workbook compresses large tables to about a tenth; a file that expands far more than that is not a real studbook.
run_limits limitsFor(std::size_t file_size) {
  const std::size_t memory = std::min(256 * MIB + 100 * file_size, 8192 * MIB);
  return {memory, 10 + file_size / (MIB / 4), std::min(64 * MIB + 50 * file_size, 2048 * MIB)};
}

/// Parses the bytes that writeWorkbookCells writes.
class CellBytes {
 public:
  CellBytes(std::string_view bytes, std::size_t at) : bytes_(bytes), at_(at) {}

  char mark() const { return bytes_[at_]; }
  void skipMark() { ++at_; }
  std::size_t number() {
    std::size_t value = 0;
    for (int shift = 0; shift < 32; shift += 8) {
      value |= static_cast<std::size_t>(static_cast<unsigned char>(bytes_[at_++])) << shift;
    }
    return value;
  }
  std::string_view text() {
    const std::size_t size = number();
    at_ += size;
    return bytes_.substr(at_ - size, size);
  }
  std::size_t at() const { return at_; }

 private:
  std::string_view bytes_;
  std::size_t at_;
};

/// The text without the blanks around it and the line breaks at its end, neither of which a spreadsheet shows.
std::string_view trimmed(std::string_view text) {
  constexpr std::string_view BLANKS = " \t\r\n";
  const std::size_t first = std::min(text.find_first_not_of(BLANKS), text.size());
  const std::size_t last = text.find_last_not_of(BLANKS);
  return text.substr(first, last == std::string_view::npos ? 0 : last + 1 - first);
}

class SheetRows : public RowSource {
 public:
  SheetRows(std::shared_ptr<const Workbook> workbook, std::string_view bytes, std::size_t at)
      : workbook_(std::move(workbook)), bytes_(bytes, at) {
    if (readRow()) {
      for (const std::string_view text : texts_) {
        titles_.push_back(qs_lib::allTrim(std::string(text)));
      }
    }
  }

  bool next() override {
    if (!readRow()) {
      return false;
    }
    if (texts_.size() < titles_.size()) {
      texts_.resize(titles_.size());
    }
    cells_ = texts_;
    return true;
  }

  std::size_t line() const override { return line_; }

 private:
  bool readRow() {
    if (bytes_.mark() != 'R') {
      return false;
    }
    bytes_.skipMark();
    line_ = bytes_.number();
    texts_.resize(bytes_.number());
    for (std::string_view& text : texts_) {
      text = trimmed(bytes_.text());
    }
    while (texts_.size() > titles_.size() && texts_.back().empty()) {
      texts_.pop_back();
    }
    return true;
  }

  std::shared_ptr<const Workbook> workbook_;
  CellBytes bytes_;
  std::size_t line_ = 0;
  std::vector<std::string_view> texts_;
};

std::string contentOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (!in) {
    throw TableError(0, "cannot be read");
  }
  return content;
}

std::string firstBytes(const std::string& file) {
  if (!std::filesystem::is_regular_file(file)) {
    return {};
  }
  std::string begin(OLD_BEGIN.size(), '\0');
  std::ifstream in(file, std::ios::binary);
  in.read(begin.data(), static_cast<std::streamsize>(begin.size()));
  begin.resize(static_cast<std::size_t>(in.gcount()));
  return begin;
}

}  // namespace

Workbook::Workbook(std::string bytes) : bytes_(std::move(bytes)) {
  CellBytes cells(bytes_, 0);
  for (char mark = cells.mark(); mark != 'E'; mark = cells.mark()) {
    cells.skipMark();
    if (mark == 'S') {
      names_.emplace_back(cells.text());
      first_rows_.push_back(cells.at());
      continue;
    }
    cells.number();
    for (std::size_t count = cells.number(); count > 0; --count) {
      cells.text();
    }
  }
}

std::shared_ptr<const Workbook> Workbook::read(const std::string& file) {
  if (firstBytes(file) == OLD_BEGIN) {
    throw TableError(0, "is an old .xls workbook, or has a password; save it as .xlsx or .ods without a password");
  }
  const std::string content = contentOf(file);
  try {
    std::string bytes =
        runIsolated(limitsFor(content.size()), [&](const auto& output) { writeWorkbookCells(content, output); });
    std::shared_ptr<const Workbook> workbook(new Workbook(std::move(bytes)));
    if (workbook->names_.empty()) {
      throw TableError(0, "has no sheets");
    }
    return workbook;
  } catch (const Failure& failure) {
    throw TableError(0, failure.what());
  }
}

std::unique_ptr<RowSource> Workbook::openSheet(std::shared_ptr<const Workbook> workbook, std::size_t sheet) {
  const std::string_view bytes = workbook->bytes_;
  const std::size_t first_row = workbook->first_rows_[sheet];
  return std::make_unique<SheetRows>(std::move(workbook), bytes, first_row);
}

bool isWorkbook(const std::string& file) {
  const std::string begin = firstBytes(file);
  return begin.starts_with(ZIP_BEGIN) || begin == OLD_BEGIN;
}

}  // namespace spx::console
