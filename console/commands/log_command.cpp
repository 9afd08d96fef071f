#include <algorithm>
#include <memory>
#include <set>

#include <CLI/CLI.hpp>
#include <SQLiteCpp/SQLiteCpp.h>

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/edits/change_text.h"
#include "console/edits/change_time.h"
#include "console/output/table_options.h"
#include "console/studbook/journal.h"
#include "console/studbook/studbook_file.h"

namespace spx::console {
namespace {

struct log_options {
  table_options table;
  std::string id;
  std::string since;
  std::int64_t change = 0;
};

/// The changes that the options select.
std::vector<journal_change> chosenChanges(SQLite::Database& database, const log_options& options) {
  if (!hasJournal(database)) {
    return {};
  }
  std::vector<journal_change> changes = readChanges(database);
  std::reverse(changes.begin(), changes.end());  // newest first
  if (!options.since.empty()) {
    const std::string since = journalTime("--since", options.since, false);
    std::erase_if(changes, [&](const journal_change& each) { return !each.time.empty() && each.time < since; });
  }
  if (options.change != 0) {
    std::erase_if(changes, [&](const journal_change& each) { return each.number != options.change; });
    if (changes.empty()) {
      throw Failure("there is no change " + std::to_string(options.change) + "; spx log lists the changes");
    }
  }
  return changes;
}

Cell numberOrNone(std::int64_t number) {
  return number == 0 ? Cell() : Cell(number);
}

/// A row for each change.
Table tableOfChanges(const std::vector<journal_change>& changes) {
  Table table({{.name = "change", .title = "Change", .kind = COLUMN_KIND::INTEGER},
               {.name = "time", .title = "Time", .in_text = false},
               {.name = "local_time", .title = "When", .kind = COLUMN_KIND::DATE},
               {.name = "author", .title = "Who"},
               {.name = "kind", .title = "Kind", .in_text = false},
               {.name = "action", .title = "What"},
               {.name = "message", .title = "Why"},
               {.name = "undone_by", .title = "Undone by", .kind = COLUMN_KIND::INTEGER},
               {.name = "cells", .title = "Cells", .kind = COLUMN_KIND::INTEGER, .in_text = false}});
  for (const journal_change& each : changes) {
    table.addRow({each.number, each.time, localTime(each.time), each.note.author, each.note.kind, each.note.action,
                  each.note.message, numberOrNone(each.undone_by), each.cells});
  }
  table.if_empty = "no changes";
  return table;
}

/// The rows of the table of animals that have or had the ID.
std::set<std::int64_t> rowsOfAnimal(SQLite::Database& database, const std::string& id) {
  SQLite::Statement query(database,
                          "SELECT \"row\" FROM animals WHERE id = ?1 UNION SELECT \"row\" FROM change_cells "
                          "WHERE of_table = 'animals' AND (animal = ?1 OR (field = 'id' AND before = ?1))");
  query.bind(1, id);
  std::set<std::int64_t> rows;
  while (query.executeStep()) {
    rows.insert(query.getColumn(0).getInt64());
  }
  if (rows.empty()) {
    throw Failure("there is no animal " + quotedText(id) + ", and never was");
  }
  return rows;
}

/// The rows of the table of events that belong or belonged to an animal.
std::set<std::int64_t> eventsOfAnimal(SQLite::Database& database, const std::set<std::int64_t>& animals) {
  SQLite::Statement query(database,
                          "SELECT \"row\" FROM events WHERE animal = ?1 UNION SELECT \"row\" FROM change_cells WHERE "
                          "of_table = 'events' AND field = 'animal' AND CAST(?1 AS TEXT) IN (before, after)");
  std::set<std::int64_t> rows;
  for (const std::int64_t animal : animals) {
    query.bind(1, animal);
    while (query.executeStep()) {
      rows.insert(query.getColumn(0).getInt64());
    }
    query.reset();
  }
  return rows;
}

/// Which entries of the journal are about an animal: those of its row, and of its events.
class CellChoice {
 public:
  CellChoice(SQLite::Database& database, const std::string& id) : has_all_(id.empty()) {
    if (!has_all_) {
      animals_ = rowsOfAnimal(database, id);
      events_ = eventsOfAnimal(database, animals_);
    }
  }

  bool has(const journal_cell& cell) const {
    const bool is_its_own = cell.table == "animals" && animals_.contains(cell.row);
    return has_all_ || is_its_own || (cell.table == "events" && events_.contains(cell.row));
  }

 private:
  bool has_all_;
  std::set<std::int64_t> animals_;
  std::set<std::int64_t> events_;
};

/// A row for each cell that was changed.
Table tableOfCells(SQLite::Database& database, const std::vector<journal_change>& changes, const std::string& id) {
  Table table({{.name = "change", .title = "Change", .kind = COLUMN_KIND::INTEGER},
               {.name = "time", .title = "Time", .in_text = false},
               {.name = "local_time", .title = "When", .kind = COLUMN_KIND::DATE},
               {.name = "author", .title = "Who"},
               {.name = "table", .title = "Table", .in_text = false},
               {.name = "row", .title = "Row", .kind = COLUMN_KIND::INTEGER, .in_text = false},
               {.name = "animal", .title = "Animal", .in_text = id.empty()},
               {.name = "field", .title = "Field"},
               {.name = "before", .title = "Before"},
               {.name = "after", .title = "After"},
               {.name = "message", .title = "Why", .in_text = !id.empty()}});
  const CellChoice choice(database, id);
  for (const journal_change& change : changes) {
    for (const journal_cell& cell : netCells(readCells(database, change.time.empty() ? 0 : change.number))) {
      // The row of a new or removed event names its animal in any case.
      const bool names_animal = cell.table == "events" && cell.field == "animal" &&
                                (cell.before.value_or("").empty() || cell.after.value_or("").empty());
      if (!choice.has(cell) || names_animal) {
        continue;
      }
      const std::string of_event = cell.table == "events" ? "event " : "";
      const std::string field = cell.field == WHOLE_ROW ? (cell.before ? "(removed)" : "(added)")
                                                        : fieldTitle(database, cell.table, cell.field);
      const bool is_row = cell.field == WHOLE_ROW;
      table.addRow({change.number, change.time, localTime(change.time), change.note.author, cell.table, cell.row,
                    cell.animal, of_event + field, is_row ? "" : cell.before.value_or(""),
                    is_row ? "" : cell.after.value_or(""), change.note.message});
    }
  }
  table.if_empty = id.empty() ? "no changes" : "no changes of " + quotedText(id);
  return table;
}

ExitCode log(Session& session, const log_options& options) {
  const std::string path = session.writableStudbook();
  StudbookFile file(path, FILE_ACCESS::READ);
  try {
    const std::vector<journal_change> changes = chosenChanges(file.database(), options);
    const bool shows_cells = !options.id.empty() || options.change != 0;
    showTable(shows_cells && hasJournal(file.database()) ? tableOfCells(file.database(), changes, options.id)
                                                         : tableOfChanges(changes),
              options.table);
  } catch (const SQLite::Exception& error) {
    failFor(path, error);
  }
  return ExitCode::DONE;
}

}  // namespace

void addLogCommand(std::vector<command>& commands) {
  const auto options = std::make_shared<log_options>();
  commands.push_back({"log", "List the changes to a studbook file, the latest first",
                      [options](Session& session) { return log(session, *options); },
                      [options](CLI::App& app) {
                        app.add_option("ID", options->id, "Only this animal, with each value before and after");
                        app.add_option("--since", options->since, "Only changes since this time")->type_name("TIME");
                        app.add_option("--change", options->change, "Every value that this change set")
                            ->type_name("N")
                            ->check(CLI::PositiveNumber);
                        addTableOptions(app, options->table);
                      }});
}

}  // namespace spx::console
