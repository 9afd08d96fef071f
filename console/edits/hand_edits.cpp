#include "console/edits/hand_edits.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace spx::console {

HandEdits::HandEdits(StudbookEdit& edit) {
  try {
    for (const journal_change& change : readChanges(edit.database())) {
      if (change.number == edit.number() || change.undone_by != 0 || change.undoes != 0) {
        continue;
      }
      const bool is_import = change.note.kind == IMPORT_CHANGE;
      for (const journal_cell& cell : netCells(readCells(edit.database(), change.number))) {
        is_import ? forget(cell) : note(cell);
      }
    }
  } catch (const SQLite::Exception& error) {
    failFor(edit.path(), error);
  }
  settle(edit);
}

bool HandEdits::hasCellOf(const std::string& table, row_number row) const {
  const auto first = cells_.lower_bound({table, row, std::string()});
  return first != cells_.end() && std::get<0>(first->first) == table && std::get<1>(first->first) == row;
}

std::map<row_number, std::string> HandEdits::formerIds() const {
  std::map<row_number, std::string> ids;
  for (const auto& [cell, former] : cells_) {
    if (std::get<0>(cell) == "animals" && std::get<2>(cell) == "id") {
      ids[std::get<1>(cell)] = former;
    }
  }
  return ids;
}

void HandEdits::note(const journal_cell& cell) {
  const std::pair row(cell.table, cell.row);
  if (cell.field == WHOLE_ROW) {
    if (!cell.before) {
      added_.insert(row);
    } else if (added_.erase(row) == 0) {
      gone_[row];
    }
    return;
  }
  const std::string before = cell.before.value_or("");
  cells_.try_emplace({cell.table, cell.row, cell.field}, before);
  gone_[row].try_emplace(cell.field, before);
  gone_[row].try_emplace("of", cell.animal);
}

/// Forgets hand edits of a cell that a later import has written.
void HandEdits::forget(const journal_cell& cell) {
  cells_.erase({cell.table, cell.row, cell.field});
  if (cell.field == WHOLE_ROW) {
    added_.erase({cell.table, cell.row});
    gone_.erase({cell.table, cell.row});
  }
}

/// Drops edits of cells that have their imported value again or whose row is gone. For removed
/// rows, stores the texts by which the imported table named them.
void HandEdits::settle(StudbookEdit& edit) {
  std::erase_if(cells_, [&](const auto& entry) {
    const auto& [table, row, field] = entry.first;
    return !edit.hasRow(table, row) || edit.cell(table, row, field) == entry.second;
  });
  for (auto& [row, cells] : gone_) {
    if (edit.hasRow(row.first, row.second)) {
      continue;
    }
    const std::string text = row.first == "events"    ? cells["of"] + " " + cells["date"] + " " + cells["event"]
                             : row.first == "animals" ? cells["id"]
                             : row.first == "columns" ? cells["of_table"] + " " + cells["title"]
                                                      : cells["name"];
    removed_.insert({row.first, text});
  }
  for (const auto& [cell, former] : cells_) {
    const auto& [table, row, field] = cell;
    if (table == "columns" && field == "title") {
      renamed_fields_[{edit.cell(table, row, "of_table"), former}] = edit.cell(table, row, "field");
    }
  }
}

}  // namespace spx::console
