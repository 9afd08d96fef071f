#pragma once

#include <string>

#include "console/studbook/database_rows.h"

/// The sums of a studbook file, which reveal damage that SQLite does not notice: a changed byte of a
/// text, or a page that claims to be empty. When another program changes the tables, triggers delete
/// the sums. All calls throw TableError for what is damaged.
namespace spx::console {

/// Computes the sums of all tables that the studbook has and stores them. Reads all tables.
void storeSums(SQLite::Database& database);

/// Checks that there are animals, and that the studbook has the tables that it has sums of. When a sum is
/// missing, because another program has changed a table, lets SQLite look for damage and checks that every column
/// with a value is listed in `columns`. Does not read the tables otherwise.
void checkStructure(SQLite::Database& database);

/// Lets SQLite check all of its structures, and compares all tables with their sums. Reads the whole file.
void checkEverything(SQLite::Database& database);

/// Compares the sum of the rows read from a table with the stored one; does nothing when there is none.
void checkSum(SQLite::Database& database, const std::string& table, const table_sum& found);

}  // namespace spx::console
