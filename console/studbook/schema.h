#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console/studbook/studbook_files.h"
#include "console/studbook/studbook_tables.h"
#include "console/tables/column_titles.h"

namespace SQLite {
class Database;
}

namespace spx::console {

/// Marks a database as a studbook file: "spxb".
inline constexpr std::int32_t APPLICATION_ID = 0x73707862;

/// The version of the schema that is written; docs/studbook-file.md says what raises it.
inline constexpr int SCHEMA_VERSION = 2;

/// The oldest version that can be read and upgraded.
inline constexpr int OLDEST_VERSION = 1;

/// A table of a studbook: its name in a studbook file, which is also that of its CSV file, its
/// fields, and the members of studbook_files and studbook_tables that hold it.
struct stored_table {
  const char* name;
  std::span<const table_field> fields;
  std::string studbook_files::*file;
  table_source studbook_tables::*source;
};

/// All tables: animals first, in the order in which they are listed and stored.
std::span<const stored_table> storedTableList();
const stored_table& findStoredTable(const std::string& name);

/// A column of a table in a studbook file.
struct stored_column {
  std::string title;  ///< as the table had it
  std::string field;  ///< the column's name in the studbook file; that of the field where it is one
};

/// The names that the columns of a table have in the database, used or not, without `row`.
std::vector<std::string> databaseColumns(SQLite::Database& database, const std::string& table);

/// The columns that a table has, in their order.
std::vector<stored_column> storedColumns(SQLite::Database& database, const std::string& table);

/// Makes the tables in an empty database, without their indexes and without the triggers of the
/// journal.
void createTables(SQLite::Database& database);

/// Brings the tables of version 1 up to date.
void upgradeTables(SQLite::Database& database);

// Indexes are created when the tables are full: updating them while the tables are filled takes longer.

void createAnimalIndex(SQLite::Database& database);  ///< unless it exists
void createEventIndex(SQLite::Database& database);

/// Gives a table one more column at its end. A column that is not a field gets a place of its own.
/// The triggers of the journal ignore it until createTriggers() is called again.
/// @return its name in the database
std::string addColumn(SQLite::Database& database, const std::string& table, const std::string& title,
                      const std::string& field);

/// A name as an SQL identifier, in double quotes.
std::string quotedName(std::string_view name);

}  // namespace spx::console
