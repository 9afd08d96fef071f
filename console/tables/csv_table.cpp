#include "console/tables/csv_table.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "spx/support/text.h"

namespace spx::console {
namespace {

constexpr std::size_t SAMPLES = 8;
constexpr std::size_t SAMPLE_SIZE = std::size_t{64} << 10;

/// Estimates the number of rows from the line ends or the separators in some parts of the file,
/// whichever suggest fewer: quoted texts can hold many of either. 0 for a file that can be read only
/// once, which is not opened: closing a pipe would lose what its writer has written so far.
std::size_t estimateRows(const std::string& file) {
  std::error_code failed;
  const std::uintmax_t size = std::filesystem::file_size(file, failed);
  if (failed) {
    return 0;
  }
  std::ifstream in(file, std::ios::binary);
  std::string titles;
  std::getline(in, titles);
  const char separator = CsvParser::separatorOf(titles);
  const auto per_row = std::count(titles.begin(), titles.end(), separator);
  std::vector<char> part(SAMPLE_SIZE);
  double read = 0;
  double lines = 0;
  double separators = 0;
  for (std::size_t sample = 0; sample < SAMPLES; ++sample) {
    in.clear();
    in.seekg(static_cast<std::streamoff>(size / SAMPLES * sample));
    in.read(part.data(), static_cast<std::streamsize>(std::min(SAMPLE_SIZE, size / SAMPLES + 1)));
    read += static_cast<double>(in.gcount());
    const char* const end = part.data() + in.gcount();
    lines += static_cast<double>(std::count<const char*>(part.data(), end, '\n'));
    separators += static_cast<double>(std::count<const char*>(part.data(), end, separator));
  }
  if (read == 0) {
    return 0;
  }
  const double rows = per_row == 0 ? lines : std::min(lines, separators / static_cast<double>(per_row));
  return static_cast<std::size_t>(rows * static_cast<double>(size) / read) + 1;
}

}  // namespace

CsvTable::CsvTable(const std::string& file, const text_encoding& encoding)
    : parser_(file, encoding), rows_(parser_.nextRows()) {
  if (!nextLine()) {
    throw TableError(0, "is empty: a header line is needed");
  }
  for (const std::string_view cell : cells_) {
    titles_.push_back(qs_lib::allTrim(std::string(cell)));
  }
}

bool CsvTable::next() {
  while (nextLine()) {
    if (std::any_of(cells_.begin(), cells_.end(), [](auto cell) { return !cell.empty(); })) {
      return true;
    }
  }
  return false;
}

bool CsvTable::nextLine() {
  while (++row_ >= rows_.size()) {
    if (rows_.failure()) {
      throw TableError(*rows_.failure());
    }
    if (rows_.isLast()) {
      return false;
    }
    // A table of one chunk needs no second thread.
    if (!ahead_) {
      ahead_.emplace([this] { return parser_.nextRows(); });
    }
    rows_ = ahead_->take();
    row_ = static_cast<std::size_t>(-1);
  }
  cells_ = rows_[row_];
  return true;
}

table_source csvSource(const std::string& file, const text_encoding& encoding) {
  if (file.empty()) {
    return {};
  }
  const table_source::opener open = [=] { return std::make_unique<CsvTable>(file, encoding); };
  return {file, open, [file] { return estimateRows(file); }};
}

}  // namespace spx::console
