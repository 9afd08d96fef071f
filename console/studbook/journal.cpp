#include "console/studbook/journal.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <pwd.h>
#include <tuple>
#include <unistd.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include "console/studbook/schema.h"

namespace spx::console {
namespace {

constexpr char JOURNAL_TABLES[] =
    "CREATE TABLE changes (change INTEGER PRIMARY KEY, time TEXT NOT NULL, author TEXT NOT NULL, "
    "kind TEXT NOT NULL, action TEXT NOT NULL, message TEXT NOT NULL, undoes INTEGER REFERENCES changes) STRICT;"
    // For every cell the triggers look up the open change.
    "CREATE INDEX changes_open ON changes (change) WHERE time = '';"
    "CREATE TABLE change_cells (step INTEGER PRIMARY KEY, change INTEGER REFERENCES changes, "
    "of_table TEXT NOT NULL, \"row\" INTEGER NOT NULL, animal TEXT NOT NULL, field TEXT NOT NULL, "
    "before TEXT, after TEXT) STRICT;"
    "CREATE INDEX change_cells_change ON change_cells (change);"
    "CREATE VIEW history AS SELECT change, time, author, kind, action, message, of_table, change_cells.\"row\", "
    "animal, "
    "coalesce((SELECT title FROM columns WHERE columns.of_table = change_cells.of_table "
    "AND columns.field = change_cells.field), field) AS field, before, after "
    "FROM change_cells LEFT JOIN changes USING (change) ORDER BY step";

constexpr char OPEN_CHANGE[] = "(SELECT change FROM changes WHERE time = '')";

std::vector<std::string> journalledTables() {
  std::vector<std::string> tables = {"columns"};
  for (const stored_table& table : storedTableList()) {
    tables.emplace_back(table.name);
  }
  return tables;
}

/// Writes the triggers of one table.
class TriggerWriter {
 public:
  TriggerWriter(SQLite::Database& database, std::string table) : database_(database), table_(std::move(table)) {}

  void write() {
    const std::vector<std::string> columns = databaseColumns(database_, table_);
    std::string added = entry("new", WHOLE_ROW, "NULL", "CAST(new.\"row\" AS TEXT)", "");
    std::string removed;
    for (const std::string& column : columns) {
      const std::string was = "old." + quotedName(column);
      const std::string is = "new." + quotedName(column);
      added += entry("new", column, "''", is, is + " <> ''");
      removed += entry("old", column, was, "''", was + " <> ''");
      create(column + "_changed", "UPDATE OF " + quotedName(column),
             entry("new", column, was, is, was + " IS NOT " + is));
    }
    create("added", "INSERT", added);
    create("removed", "DELETE", removed + entry("old", WHOLE_ROW, "CAST(old.\"row\" AS TEXT)", "NULL", ""));
  }

 private:
  void create(const std::string& name, const std::string& event, const std::string& entries) {
    database_.exec("CREATE TRIGGER " + quotedName(table_ + "_" + name) + " AFTER " + event + " ON " + table_ +
                   " BEGIN " + entries + "END");
  }

  /// The statement that notes one cell.
  /// @param row  "old" or "new": the row that names the animal
  std::string entry(const std::string& row, const std::string& field, const std::string& before,
                    const std::string& after, const std::string& condition) const {
    return std::string("INSERT INTO change_cells (change, of_table, \"row\", animal, field, before, after) SELECT ") +
           OPEN_CHANGE + ", '" + table_ + "', " + row + ".\"row\", " + animal(row) + ", '" + field + "', " + before +
           ", " + after + (condition.empty() ? "" : " WHERE " + condition) + "; ";
  }

  std::string animal(const std::string& row) const {
    if (table_ == "animals") {
      return row + ".id";
    }
    return table_ == "events" ? "coalesce((SELECT id FROM animals WHERE \"row\" = " + row + ".animal), '')" : "''";
  }

  SQLite::Database& database_;
  std::string table_;
};

std::string userName() {
  const struct passwd* user = ::getpwuid(::geteuid());
  const char* name = user == nullptr ? std::getenv("USER") : user->pw_name;
  return name == nullptr || *name == '\0' ? "user " + std::to_string(::geteuid()) : name;
}

/// Entries without a change were made by other programs; they become a change of their own.
void adoptOutsideChanges(SQLite::Database& database) {
  if (database.execAndGet("SELECT NOT EXISTS (SELECT 1 FROM change_cells WHERE change IS NULL)").getInt() != 0) {
    return;
  }
  SQLite::Statement insert(database,
                           "INSERT INTO changes (time, author, kind, action, message) "
                           "VALUES ('', 'another program', ?, 'changed outside spx; noticed now', '')");
  insert.bind(1, OUTSIDE_CHANGE);
  insert.exec();
  database.exec("UPDATE change_cells SET change = " + std::to_string(database.getLastInsertRowid()) +
                " WHERE change IS NULL");
  closeChange(database);
}

std::optional<std::string> textOrNone(const SQLite::Column& column) {
  if (column.isNull()) {
    return std::nullopt;
  }
  return column.getString();
}

std::vector<journal_cell> selectCells(SQLite::Statement& query) {
  std::vector<journal_cell> cells;
  while (query.executeStep()) {
    cells.push_back({query.getColumn(0).getInt64(), query.getColumn(1), query.getColumn(2).getInt64(),
                     query.getColumn(3), query.getColumn(4), textOrNone(query.getColumn(5)),
                     textOrNone(query.getColumn(6))});
  }
  return cells;
}

constexpr char SELECT_CELLS[] =
    "SELECT coalesce(change, 0), of_table, \"row\", animal, field, before, after FROM change_cells ";

/// Sets `undone_by`: the last change that undoes a change counts, unless it was itself undone. A
/// change can only be undone by a later one, so the list is processed from its end.
void settleUndone(std::vector<journal_change>& changes) {
  for (std::size_t next = changes.size(); next-- > 0;) {
    const journal_change& change = changes[next];
    if (change.undoes == 0 || change.undone_by != 0) {
      continue;
    }
    const auto undone = std::find_if(changes.begin(), changes.end(),
                                     [&](const journal_change& each) { return each.number == change.undoes; });
    if (undone != changes.end()) {
      undone->undone_by = change.number;
    }
  }
}

}  // namespace

void createJournal(SQLite::Database& database) {
  database.exec(JOURNAL_TABLES);
}

void createTriggers(SQLite::Database& database) {
  dropTriggers(database);
  for (const std::string& table : journalledTables()) {
    TriggerWriter(database, table).write();
  }
}

void dropTriggers(SQLite::Database& database) {
  std::vector<std::string> names;
  {
    SQLite::Statement query(database, "SELECT name FROM sqlite_schema WHERE type = 'trigger'");
    while (query.executeStep()) {
      names.push_back(query.getColumn(0));
    }
  }
  for (const std::string& name : names) {
    database.exec("DROP TRIGGER " + quotedName(name));
  }
}

bool hasJournal(SQLite::Database& database) {
  return database.tableExists("change_cells");
}

std::int64_t openChange(SQLite::Database& database, const change_note& note, std::int64_t undoes) {
  adoptOutsideChanges(database);
  SQLite::Statement insert(database,
                           "INSERT INTO changes (time, author, kind, action, message, undoes) "
                           "VALUES ('', ?, ?, ?, ?, nullif(?, 0))");
  insert.bind(1, note.author.empty() ? userName() : note.author);
  insert.bind(2, note.kind);
  insert.bind(3, note.action);
  insert.bind(4, note.message);
  insert.bind(5, undoes);
  insert.exec();
  return database.getLastInsertRowid();
}

void closeChange(SQLite::Database& database) {
  database.exec("UPDATE changes SET time = strftime('%Y-%m-%dT%H:%M:%SZ', 'now') WHERE time = ''");
}

std::vector<journal_change> readChanges(SQLite::Database& database) {
  SQLite::Statement query(
      database,
      "SELECT change, time, kind, action, author, message, coalesce(undoes, 0), "
      "(SELECT count(*) FROM change_cells WHERE change_cells.change = changes.change) FROM changes ORDER BY change");
  std::vector<journal_change> changes;
  while (query.executeStep()) {
    changes.push_back({query.getColumn(0).getInt64(),
                       query.getColumn(1),
                       {query.getColumn(2), query.getColumn(3), query.getColumn(4), query.getColumn(5)},
                       query.getColumn(6).getInt64(),
                       0,
                       static_cast<std::size_t>(query.getColumn(7).getInt64())});
  }
  settleUndone(changes);
  const int outside = database.execAndGet("SELECT count(*) FROM change_cells WHERE change IS NULL");
  if (outside != 0) {
    changes.push_back({changes.empty() ? 1 : changes.back().number + 1,
                       "",
                       {OUTSIDE_CHANGE, "changed outside spx", "another program", ""},
                       0,
                       0,
                       static_cast<std::size_t>(outside)});
  }
  return changes;
}

std::vector<journal_cell> readCells(SQLite::Database& database, std::int64_t change) {
  SQLite::Statement query(database, std::string(SELECT_CELLS) + "WHERE change IS nullif(?, 0) ORDER BY step");
  query.bind(1, change);
  return selectCells(query);
}

std::vector<journal_cell> readAllCells(SQLite::Database& database) {
  SQLite::Statement query(database, std::string(SELECT_CELLS) + "ORDER BY step");
  return selectCells(query);
}

std::vector<journal_cell> netCells(const std::vector<journal_cell>& cells) {
  std::map<std::tuple<std::string, std::int64_t, std::string>, std::size_t> places;
  std::vector<journal_cell> net;
  for (const journal_cell& cell : cells) {
    const auto [place, is_new] = places.try_emplace({cell.table, cell.row, cell.field}, net.size());
    if (is_new) {
      net.push_back(cell);
    } else {
      net[place->second].after = cell.after;
    }
  }
  std::erase_if(net, [](const journal_cell& cell) { return cell.before == cell.after; });
  return net;
}

}  // namespace spx::console
