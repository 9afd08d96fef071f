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
constexpr std::size_t SAMPLE_SIZE = 64 * 1024;

/// The number of lines by those of some parts of the file; 0 for a file that can be read only once.
std::size_t estimateRows(const std::string& file) {
  std::error_code failed;
  const std::uintmax_t size = std::filesystem::file_size(file, failed);
  std::ifstream in(file, std::ios::binary);
  if (failed || !in) return 0;
  std::vector<char> part(SAMPLE_SIZE);
  std::uintmax_t read = 0;
  std::uintmax_t lines = 1;
  for (std::size_t sample = 0; sample < SAMPLES; ++sample) {
    in.clear();
    in.seekg(static_cast<std::streamoff>(size / SAMPLES * sample));
    in.read(part.data(), static_cast<std::streamsize>(std::min(SAMPLE_SIZE, size / SAMPLES + 1)));
    read += static_cast<std::uintmax_t>(in.gcount());
    lines += static_cast<std::uintmax_t>(std::count(part.data(), part.data() + in.gcount(), '\n'));
  }
  const double share = read == 0 ? 0 : static_cast<double>(size) / static_cast<double>(read);
  return static_cast<std::size_t>(static_cast<double>(lines) * share);
}

}  // namespace

CsvTable::CsvTable(const std::string& file) : parser_(file), rows_(parser_.nextRows()) {
  if (!nextLine()) throw TableError(0, "is empty: a header line is needed");
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
    if (rows_.failure()) throw TableError(*rows_.failure());
    if (rows_.isLast()) return false;
    // A table of one chunk needs no second thread.
    if (!ahead_) ahead_.emplace([this] { return parser_.nextRows(); });
    rows_ = ahead_->take();
    row_ = static_cast<std::size_t>(-1);
  }
  cells_ = rows_[row_];
  return true;
}

table_source csvSource(const std::string& file) {
  if (file.empty()) return {};
  const table_source::opener open = [file] { return std::make_unique<CsvTable>(file); };
  return {file, open, [file] { return estimateRows(file); }};
}

}  // namespace spx::console
