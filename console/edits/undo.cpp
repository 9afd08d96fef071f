#include "console/edits/undo.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <utility>

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/support/atomic_file.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/edits/change_text.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

/// What a change did to one row.
struct changed_row {
  std::string table;
  row_number row;
  std::string animal;
  bool added = false;
  bool removed = false;
  std::vector<journal_cell> cells;  ///< without the entry of the row itself
};

/// In the order in which the rows were first changed.
std::vector<changed_row> changedRows(const std::vector<journal_cell>& cells) {
  std::vector<changed_row> rows;
  std::map<std::pair<std::string, row_number>, std::size_t> places;
  for (const journal_cell& cell : cells) {
    const auto [place, is_new] = places.try_emplace({cell.table, cell.row}, rows.size());
    if (is_new) {
      rows.push_back({cell.table, cell.row, cell.animal, false, false, {}});
    }
    changed_row& row = rows[place->second];
    if (cell.field != WHOLE_ROW) {
      row.cells.push_back(cell);
    } else if (cell.before) {
      row.removed = true;
    } else {
      row.added = true;
    }
  }
  return rows;
}

class Undoing {
 public:
  Undoing(StudbookEdit& edit, std::int64_t change) : edit_(edit), change_(change) {}

  void run() {
    std::vector<changed_row> rows = changedRows(netCells(readCells(edit_.database(), change_)));
    std::reverse(rows.begin(), rows.end());
    for (const changed_row& row : rows) {
      if (row.removed) {
        bringBack(row);
      } else if (!row.added) {
        setBack(row);
      }
    }
    // Added rows are removed last, since other rows may still refer to them.
    for (const changed_row& row : rows) {
      if (row.added) {
        takeAway(row);
      }
    }
  }

 private:
  void bringBack(const changed_row& row) {
    if (edit_.hasRow(row.table, row.row)) {
      fail(row, WHOLE_ROW);
    }
    std::vector<field_value> values;
    for (const journal_cell& cell : row.cells) {
      values.push_back({cell.field, cell.before.value_or("")});
    }
    edit_.insertAt(row.table, row.row, values);
  }

  void setBack(const changed_row& row) {
    for (const journal_cell& cell : row.cells) {
      if (!edit_.hasRow(row.table, row.row) || edit_.cell(row.table, row.row, cell.field) != cell.after) {
        fail(row, cell.field);
      }
      edit_.set(row.table, row.row, cell.field, cell.before.value_or(""));
    }
  }

  void takeAway(const changed_row& row) {
    if (!edit_.hasRow(row.table, row.row)) {
      fail(row, WHOLE_ROW);
    }
    for (const std::string& field : databaseColumns(edit_.database(), row.table)) {
      const auto entry = std::find_if(row.cells.begin(), row.cells.end(),
                                      [&](const journal_cell& cell) { return cell.field == field; });
      const std::string expected = entry == row.cells.end() ? "" : entry->after.value_or("");
      if (edit_.cell(row.table, row.row, field) != expected) {
        fail(row, field);
      }
    }
    if (row.table == "animals") {
      refuseEventsOf(row);
    }
    if (row.table == "columns") {
      refuseValuesOf(row);
    }
    edit_.remove(row.table, row.row);
  }

  void refuseEventsOf(const changed_row& row) {
    const std::vector<row_number> events = edit_.find("events", "animal", std::to_string(row.row));
    if (!events.empty()) {
      failFor("events of " + quotedText(row.animal) + " were added later",
              lastChangeOf("events", events.back(), WHOLE_ROW));
    }
  }

  void refuseValuesOf(const changed_row& row) {
    const std::string table = edit_.cell("columns", row.row, "of_table");
    const std::string field = edit_.cell("columns", row.row, "field");
    for (const row_number each : edit_.rows(table)) {
      if (field != "id" && !edit_.cell(table, each, field).empty()) {
        failFor("values of the field " + quotedText(edit_.cell("columns", row.row, "title")) + " were entered later",
                lastChangeOf(table, each, field));
      }
    }
  }

  std::int64_t lastChangeOf(const std::string& table, row_number row, const std::string& field) {
    SQLite::Statement query(edit_.database(),
                            "SELECT coalesce(max(change), 0) FROM change_cells "
                            "WHERE of_table = ? AND \"row\" = ? AND (field = ? OR field = 'row')");
    query.bind(1, table);
    query.bind(2, row);
    query.bind(3, field);
    query.executeStep();
    return query.getColumn(0).getInt64();
  }

  [[noreturn]] void fail(const changed_row& row, const std::string& field) {
    const std::string what = field == WHOLE_ROW ? (row.table == "animals" ? "the animal" : "the row")
                                                : fieldTitle(edit_.database(), row.table, field);
    failFor(what + (row.animal.empty() ? "" : " of " + quotedText(row.animal)) + " was changed later",
            lastChangeOf(row.table, row.row, field));
  }

  [[noreturn]] void failFor(const std::string& what, std::int64_t later) {
    throw Failure("change " + std::to_string(change_) + " cannot be undone: " + what + ", by change " +
                  std::to_string(later) + "; undo that one first");
  }

  StudbookEdit& edit_;
  std::int64_t change_;
};

std::optional<journal_change> lastThat(const std::vector<journal_change>& changes,
                                       bool (*is_one)(const journal_change&)) {
  const auto found = std::find_if(changes.rbegin(), changes.rend(), [&](const journal_change& change) {
    return change.undone_by == 0 && change.cells != 0 && is_one(change);
  });
  return found == changes.rend() ? std::nullopt : std::optional(*found);
}

/// Undoes all changes after that one and deletes them from the journal.
void goBackTo(StudbookEdit& edit, std::int64_t last) {
  for (std::int64_t change = edit.number() - 1; change > last; --change) {
    takeBack(edit, change);
  }
  const std::string later = " WHERE change > " + std::to_string(last);
  edit.database().exec("DELETE FROM change_cells" + later);
  edit.database().exec("DELETE FROM changes" + later);
}

/// The last change made up to a time.
std::int64_t changeAt(SQLite::Database& database, const std::string& file, const std::string& time) {
  if (!hasJournal(database)) {
    throw Failure(file + ": has no history; it begins with the first change that this program makes");
  }
  SQLite::Statement query(database, "SELECT coalesce(max(change), 0) FROM changes WHERE time <= ?");
  query.bind(1, time);
  query.executeStep();
  const std::int64_t change = query.getColumn(0).getInt64();
  if (change == 0 &&
      database.execAndGet("SELECT count(*) FROM changes WHERE change = 1 AND kind = 'import'").getInt() != 0) {
    throw Failure(file + ": was not created until after that time");
  }
  return change;
}

}  // namespace

std::optional<journal_change> lastChange(const std::vector<journal_change>& changes) {
  return lastThat(changes, [](const journal_change& change) { return change.undoes == 0; });
}

std::optional<journal_change> lastUndo(const std::vector<journal_change>& changes) {
  return lastThat(changes, [](const journal_change& change) { return change.note.kind == UNDO_CHANGE; });
}

void takeBack(StudbookEdit& edit, std::int64_t change) {
  try {
    Undoing(edit, change).run();
  } catch (const SQLite::Exception& error) {
    failFor(edit.path(), error);
  }
}

std::int64_t restoreStudbook(const std::string& file, const std::string& time, const std::string& target) {
  qs_lib::AtomicFile stage(target);
  errno = 0;
  if (!stage.create()) {
    throw Failure(target + ": cannot be written: " + std::strerror(errno));
  }
  std::int64_t last = 0;
  try {
    StudbookFile source(file, FILE_ACCESS::READ);
    last = changeAt(source.database(), file, time);
    SQLite::Database copy(stage.writePath(), SQLite::OPEN_READWRITE);
    SQLite::Backup(copy, source.database()).executeStep();
  } catch (const SQLite::Exception& error) {
    failFor(target, error);
  }
  {
    StudbookEdit edit(stage.writePath(), {UNDO_CHANGE, "restore", "", ""});
    goBackTo(edit, last);
    edit.commit();
  }
  errno = 0;
  if (!stage.commit()) {
    throw Failure(target + ": cannot be written: " + std::strerror(errno));
  }
  return last;
}

}  // namespace spx::console
