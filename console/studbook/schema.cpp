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
    "CREATE TABLE columns (of_table TEXT NOT NULL, position INTEGER NOT NULL, title TEXT NOT NULL, "
    "field TEXT NOT NULL, PRIMARY KEY (of_table, position), UNIQUE (of_table, field)) "
    "STRICT, WITHOUT ROWID";

// An event has the row of its animal instead of the ID.
std::string columnText(const stored_table& table, const table_field& field) {
  if (table.name == std::string("events") && field.name == ID_FIELD.name) {
    return ", animal INTEGER NOT NULL REFERENCES animals (\"row\")";
  }
  return ", " + quotedName(field.name) + " TEXT NOT NULL DEFAULT ''";
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

void createAnimalIndex(SQLite::Database& database) {
  database.exec("CREATE INDEX IF NOT EXISTS animals_id ON animals (id)");
}

void createEventIndex(SQLite::Database& database) {
  database.exec("CREATE INDEX events_animal ON events (animal)");
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
  SQLite::Statement last(database, "SELECT coalesce(max(position), 0) FROM columns WHERE of_table = ?");
  last.bind(1, table);
  last.executeStep();
  const std::int64_t position = last.getColumn(0).getInt64() + 1;
  std::string name = field.empty() ? "user_" + std::to_string(position) : field;
  if (field.empty()) {
    database.exec("ALTER TABLE " + table + " ADD COLUMN " + quotedName(name) + " TEXT NOT NULL DEFAULT ''");
  }
  SQLite::Statement insert(database, "INSERT INTO columns VALUES (?, ?, ?, ?)");
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
