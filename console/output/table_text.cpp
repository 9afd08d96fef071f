// Tables for people.
#include <algorithm>
#include <ostream>

#include "console/base/display_text.h"
#include "console/output/table.h"

namespace spx::console {
namespace {

constexpr std::size_t GAP = 2;         // blanks between two columns
constexpr std::size_t NARROWEST = 10;  // of a column whose texts are wrapped

bool isRightAligned(const table_column& column) {
  if (column.alignment != ALIGNMENT::BY_KIND) {
    return column.alignment == ALIGNMENT::RIGHT;
  }
  return column.kind == COLUMN_KIND::INTEGER || column.kind == COLUMN_KIND::REAL || column.kind == COLUMN_KIND::PERCENT;
}

std::size_t longestWord(std::string_view title) {
  std::size_t longest = 0;
  while (!title.empty()) {
    const std::string_view word = title.substr(0, title.find(' '));
    longest = std::max(longest, displayWidth(word));
    title.remove_prefix(std::min(title.size(), word.size() + 1));
  }
  return longest;
}

/// The widths at which only titles have to be wrapped.
std::vector<std::size_t> naturalWidths(const Table& table, const table_part& part) {
  std::vector<std::size_t> widths;
  for (const std::size_t which : part.columns) {
    const table_column& column = table.columns()[which];
    std::size_t width = longestWord(visibleText(column.title));
    for (const std::size_t row : part.rows) {
      width = std::max(width, displayWidth(cellText(table.cell(row, which), column)));
    }
    widths.push_back(width);
  }
  return widths;
}

std::size_t lineWidth(const std::vector<std::size_t>& widths) {
  std::size_t width = 0;
  for (const std::size_t each : widths) {
    width += each + GAP;
  }
  return width < GAP ? 0 : width - GAP;
}

/// Takes what is too much from the widest columns, as far as the least widths allow.
void narrow(std::vector<std::size_t>& widths, const std::vector<std::size_t>& least, std::size_t room) {
  while (lineWidth(widths) > room) {
    std::size_t* widest = nullptr;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      if (widths[i] > least[i] && (widest == nullptr || widths[i] > *widest)) {
        widest = &widths[i];
      }
    }
    if (widest == nullptr) {
      return;
    }
    --*widest;
  }
}

/// Texts are wrapped, at blanks as long as that is enough. The first column names its row and stays whole.
void fit(std::vector<std::size_t>& widths, const Table& table, const table_part& part, std::size_t room) {
  std::vector<std::size_t> words = widths;
  std::vector<std::size_t> letters = widths;
  for (std::size_t i = 1; i < widths.size() && lineWidth(widths) > room; ++i) {
    const table_column& column = table.columns()[part.columns[i]];
    if (column.kind != COLUMN_KIND::TEXT) {
      continue;
    }
    words[i] = letters[i] = std::min(NARROWEST, widths[i]);
    for (const std::size_t row : part.rows) {
      words[i] = std::max(words[i], longestWord(cellText(table.cell(row, part.columns[i]), column)));
    }
  }
  narrow(widths, words, room);
  narrow(widths, letters, room);
}

/// Writes cells that may take several lines side by side.
/// @param at_bottom  whether cells with fewer lines are aligned at the bottom, as for titles
void writeCells(std::ostream& out, const std::vector<std::vector<std::string>>& cells,
                const std::vector<std::size_t>& widths, const std::vector<bool>& right, bool at_bottom) {
  std::size_t height = 0;
  for (const std::vector<std::string>& lines : cells) {
    height = std::max(height, lines.size());
  }
  for (std::size_t line = 0; line < height; ++line) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::size_t skipped = at_bottom ? height - cells[i].size() : 0;
      const bool has_line = line >= skipped && line - skipped < cells[i].size();
      text += (i == 0 ? "" : std::string(GAP, ' ')) +
              padded(has_line ? cells[i][line - skipped] : std::string(), widths[i], right[i]);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    out << text << "\n";
  }
}

void writeHelp(std::ostream& out, const Table& table, const table_part& part, std::size_t width) {
  std::size_t widest = 0;
  for (const std::size_t which : part.columns) {
    const table_column& column = table.columns()[which];
    widest = std::max(widest, column.help.empty() ? 0 : displayWidth(visibleText(column.title)));
  }
  if (widest == 0) {
    return;
  }
  out << "\n";
  for (const std::size_t which : part.columns) {
    const table_column& column = table.columns()[which];
    if (column.help.empty()) {
      continue;
    }
    const std::size_t room = width > widest + GAP + 20 ? width - widest - GAP : 20;
    writeCells(out, {{visibleText(column.title)}, wrapped(visibleText(column.help), room)}, {widest, room},
               {false, false}, false);
  }
}

/// "150 animals", "12 of 150 animals", or with a limit "first 5 of 12 animals that match; 150 in all".
std::string countText(const Table& table, const table_part& part) {
  const auto count = [&table](std::size_t rows) {
    return std::to_string(rows) + " " + (rows == 1 ? table.one_row : table.many_rows);
  };
  const std::size_t matching = part.rows.size() + part.beyond_limit;
  const std::string shown = std::to_string(part.rows.size());
  if (part.beyond_limit == 0) {
    return (matching == table.rows() ? "" : shown + " of ") + count(table.rows());
  }
  const std::string in_all = " that match; " + std::to_string(table.rows()) + " in all";
  return "first " + shown + " of " + count(matching) + (matching == table.rows() ? "" : in_all);
}

void writeNotes(std::ostream& out, const Table& table, std::size_t width) {
  out << (table.notes.empty() ? "" : "\n");
  for (const std::string& note : table.notes) {
    for (const std::string& line : wrapped(visibleText(note), width)) {
      out << line << "\n";
    }
  }
}

void writeRecord(std::ostream& out, const Table& table, const table_part& part, std::size_t width) {
  std::size_t widest = 0;
  for (const std::size_t which : part.columns) {
    widest = std::max(widest, displayWidth(visibleText(table.columns()[which].title)));
  }
  const std::size_t room = width > widest + GAP + 20 ? width - widest - GAP : 20;
  for (const std::size_t which : part.columns) {
    const table_column& column = table.columns()[which];
    const std::string value = cellText(table.cell(part.rows.front(), which), column);
    writeCells(out, {{visibleText(column.title)}, wrapped(value, room)}, {widest, room}, {false, false}, false);
  }
}

void writeRows(std::ostream& out, const Table& table, const table_part& part, std::size_t width) {
  std::vector<std::size_t> widths = naturalWidths(table, part);
  fit(widths, table, part, width);
  std::vector<std::vector<std::string>> cells;
  std::vector<bool> right;
  std::string rule;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const table_column& column = table.columns()[part.columns[i]];
    cells.push_back(wrapped(visibleText(column.title), widths[i]));
    right.push_back(isRightAligned(column));
    rule += (i == 0 ? "" : std::string(GAP, ' ')) + std::string(widths[i], '-');
  }
  writeCells(out, cells, widths, right, true);
  out << rule << "\n";
  for (const std::size_t row : part.rows) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::size_t which = part.columns[i];
      cells[i] = wrapped(cellText(table.cell(row, which), table.columns()[which]), widths[i]);
    }
    writeCells(out, cells, widths, right, false);
    if (!out) {
      return;  // the reader has left the pager
    }
  }
}

}  // namespace

void writeText(std::ostream& out, const Table& table, const table_part& part, std::size_t width) {
  if (part.rows.empty() && !table.if_empty.empty() && table.rows() == 0) {
    out << visibleText(table.if_empty) << "\n";
    writeNotes(out, table, width);
    return;
  }
  if (!table.heading.empty()) {
    out << visibleText(table.heading) << "\n\n";
  }
  table.is_record && !part.rows.empty() ? writeRecord(out, table, part, width) : writeRows(out, table, part, width);
  if (!table.one_row.empty()) {
    out << "\n" << countText(table, part) << "\n";
  }
  writeHelp(out, table, part, width);
  writeNotes(out, table, width);
}

}  // namespace spx::console
