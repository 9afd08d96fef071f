#include "console/studbook/schema.h"

#include <algorithm>
#include <iterator>

#include <SQLiteCpp/SQLiteCpp.h>

#include "console/tables/animals_table.h"
#include "console/tables/events_table.h"
#include "console/tables/locations_table.h"

namespace spx::console {
namespace {

constexpr char COLUMNS_TABLE[] =
    "CREATE TABLE columns (\"row\" INTEGER PRIMARY KEY, of_table TEXT NOT NULL DEFAULT '', "
    "position INTEGER NOT NULL DEFAULT 0, title TEXT NOT NULL DEFAULT '', field TEXT NOT NULL DEFAULT '', "
    "UNIQUE (of_table, position), UNIQUE (of_table, field)) STRICT";

// Events store the row of their animal instead of the ID.
std::string columnText(const stored_table& table, const table_field& field) {
  if (table.name == std::string("events") && field.name == ID_FIELD.name) {
    return ", animal INTEGER NOT NULL REFERENCES animals (\"row\")";
  }
  return ", " + quotedName(field.name) + " TEXT NOT NULL DEFAULT ''";
}

/// The number after those of all existing and removed columns, since undo may restore the latter.
std::int64_t freePosition(SQLite::Database& database, const std::string& table) {
  SQLite::Statement last(database,
                         "SELECT 1 + max(coalesce((SELECT max(position) FROM columns WHERE of_table = ?1), 0), "
                         "coalesce((SELECT max(CAST(before AS INTEGER)) FROM change_cells "
                         "WHERE of_table = 'columns' AND field = 'position'), 0))");
  last.bind(1, table);
  last.executeStep();
  return last.getColumn(0).getInt64();
}

/// Adds a database column for a user-defined field, with the first free number from `number` on.
/// The column of a removed field stays, so that the journal can restore its cells.
std::string addPlace(SQLite::Database& database, const std::string& table, std::int64_t number) {
  const std::vector<std::string> taken = databaseColumns(database, table);
  std::string name;
  do {
    name = "user_" + std::to_string(number++);
  } while (std::find(taken.begin(), taken.end(), name) != taken.end());
  database.exec("ALTER TABLE " + table + " ADD COLUMN " + quotedName(name) + " TEXT NOT NULL DEFAULT ''");
  return name;
}

}  // namespace

std::span<const stored_table> storedTableList() {
  using files = studbook_files;
  using sources = studbook_tables;
  static const stored_table tables[] = {
      {"animals", animalFields(), &files::animals, &sources::animals},
      {"events", eventFields(), &files::events, &sources::events},
      {"locations", locationFields(), &files::locations, &sources::locations},
      {"programs", programFields(), &files::programs, &sources::programs},
  };
  return tables;
}

const stored_table& findStoredTable(const std::string& name) {
  const auto tables = storedTableList();
  return *std::find_if(tables.begin(), tables.end(), [&](const stored_table& table) { return table.name == name; });
}

void createTables(SQLite::Database& database) {
  database.exec("PRAGMA application_id = " + std::to_string(APPLICATION_ID));
  database.exec("PRAGMA user_version = " + std::to_string(SCHEMA_VERSION));
  database.exec(COLUMNS_TABLE);
  for (const stored_table& table : storedTableList()) {
    std::string text = std::string("CREATE TABLE ") + table.name + " (\"row\" INTEGER PRIMARY KEY";
    for (const table_field& field : table.fields) {
      text += columnText(table, field);
    }
    database.exec(text + ") STRICT");
  }
}

void upgradeTables(SQLite::Database& database) {
  database.exec("ALTER TABLE columns RENAME TO former_columns");
  database.exec(COLUMNS_TABLE);
  database.exec(
      "INSERT INTO columns (of_table, position, title, field) "
      "SELECT of_table, position, title, field FROM former_columns ORDER BY of_table, position");
  database.exec("DROP TABLE former_columns");
  database.exec("PRAGMA user_version = " + std::to_string(SCHEMA_VERSION));
}

void createAnimalIndex(SQLite::Database& database) {
  database.exec("CREATE INDEX IF NOT EXISTS animals_id ON animals (id)");
}

void createEventIndex(SQLite::Database& database) {
  database.exec("CREATE INDEX events_animal ON events (animal)");
}

std::vector<std::string> databaseColumns(SQLite::Database& database, const std::string& table) {
  SQLite::Statement query(database, "SELECT name FROM pragma_table_info(?) WHERE name <> 'row'");
  query.bind(1, table);
  std::vector<std::string> names;
  while (query.executeStep()) {
    names.push_back(query.getColumn(0));
  }
  return names;
}

std::vector<stored_column> storedColumns(SQLite::Database& database, const std::string& table) {
  SQLite::Statement query(database, "SELECT title, field FROM columns WHERE of_table = ? ORDER BY position");
  query.bind(1, table);
  std::vector<stored_column> columns;
  while (query.executeStep()) {
    columns.push_back({query.getColumn(0), query.getColumn(1)});
  }
  return columns;
}

std::string addColumn(SQLite::Database& database, const std::string& table, const std::string& title,
                      const std::string& field) {
  const std::int64_t position = freePosition(database, table);
  const std::string name = field.empty() ? addPlace(database, table, position) : field;
  SQLite::Statement insert(database, "INSERT INTO columns (of_table, position, title, field) VALUES (?, ?, ?, ?)");
  insert.bind(1, table);
  insert.bind(2, position);
  insert.bind(3, title);
  insert.bind(4, name);
  insert.exec();
  return name;
}

std::string quotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char letter : name) {
    quoted += letter == '"' ? "\"\"" : std::string(1, letter);
  }
  return quoted + "\"";
}

}  // namespace spx::console
