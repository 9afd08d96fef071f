#include "console/output/column_table.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "console/output/table.h"

namespace spx::console {
namespace {

constexpr std::size_t LONGEST_SAMPLE = 24;

std::string samplesOf(const column_note& column) {
  std::string text;
  for (const std::string& sample : column.samples) {
    const bool is_long = sample.size() > LONGEST_SAMPLE;
    std::size_t end = std::min(sample.size(), LONGEST_SAMPLE);
    while (is_long && end > 0 && (sample[end] & 0xC0) == 0x80) {
      --end;  // keeps UTF-8 characters whole
    }
    text += (text.empty() ? "" : "; ") + sample.substr(0, end) + (is_long ? "..." : "");
  }
  return text.empty() ? "(empty)" : text;
}

}  // namespace

void showColumns(std::ostream& out, const ReadingNotes& notes) {
  for (const TableNotes& table : notes.tables()) {
    if (table.columns.empty()) {
      continue;
    }
    Table shown({{"column", "Column"}, {"field", "Read as"}, {"values", "First values"}});
    shown.heading = table.name();
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
      const column_note& note = table.columns[column];
      const std::string title = note.title.empty() ? "column " + std::to_string(column + 1) : note.title;
      shown.addRow({title, note.field.empty() ? "field of its own" : note.field, samplesOf(note)});
    }
    writeText(out, shown, wholeTable(shown, OUTPUT_FORMAT::TEXT));
    out << "\n";
  }
}

}  // namespace spx::console
