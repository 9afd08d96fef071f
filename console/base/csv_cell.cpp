#include "console/base/csv_cell.h"

namespace spx::console {
namespace {

bool needsQuotes(std::string_view text, std::string_view others) {
  constexpr std::string_view BLANKS = " \t";
  if (text.empty()) {
    return false;
  }
  return text.find_first_of(",\"\r\n") != std::string_view::npos ||
         text.find_first_of(others) != std::string_view::npos || BLANKS.find(text.front()) != std::string_view::npos ||
         BLANKS.find(text.back()) != std::string_view::npos;
}

}  // namespace

void appendCsvCell(std::string& line, std::string_view text, std::string_view others) {
  if (!needsQuotes(text, others)) {
    line += text;
    return;
  }
  line += '"';
  for (const char letter : text) {
    line.append(letter == '"' ? 2 : 1, letter);
  }
  line += '"';
}

}  // namespace spx::console
