#include "fuzz/csv_reader.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

class CsvReader {
 public:
  CsvReader(std::string_view text, char separator) : left_(text), separator_(separator) {}

  bool atEnd() const { return left_.empty(); }

  csv_row row() {
    csv_row cells = {cell()};
    while (take(separator_)) {
      cells.push_back(cell());
    }
    require(take('\n'), "a row of a table does not end after a cell");
    return cells;
  }

 private:
  bool take(char expected) {
    if (left_.empty() || left_.front() != expected) {
      return false;
    }
    left_.remove_prefix(1);
    return true;
  }

  std::string cell() { return take('"') ? quotedCell() : plainCell(); }

  std::string quotedCell() {
    std::string text;
    for (;;) {
      const std::size_t quote = left_.find('"');
      require(quote != std::string_view::npos, "a quoted cell does not end");
      text += left_.substr(0, quote);
      left_.remove_prefix(quote + 1);
      if (!take('"')) {
        return text;
      }
      text += '"';
    }
  }

  std::string plainCell() {
    const std::string ends = {separator_, '\n'};
    const std::size_t size = left_.find_first_of(ends);
    require(size != std::string_view::npos, "a cell without an end");
    const std::string text(left_.substr(0, size));
    require(text.find_first_of("\"'#\r") == std::string::npos, "a cell needs quotes");
    require(text.empty() || (text.front() != ' ' && text.back() != ' '), "a cell with outer blanks");
    left_.remove_prefix(size);
    return text;
  }

  std::string_view left_;
  char separator_;
};

}  // namespace

std::vector<csv_row> readCsv(std::string_view text, char separator) {
  std::vector<csv_row> rows;
  CsvReader reader(text, separator);
  while (!reader.atEnd()) {
    rows.push_back(reader.row());
  }
  return rows;
}

}  // namespace spx::fuzz
