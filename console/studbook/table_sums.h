#pragma once

#include <string>

#include "console/studbook/database_rows.h"

/// The sums of a studbook file, by which damage is found that SQLite does not see: a byte of a text,
/// or a page that says that it is empty. Another program may change the tables: triggers then drop
/// the sums. All calls throw TableError for what is damaged.
namespace spx::console {

/// Computes the sums of all tables that the studbook has and stores them. Reads all tables.
void storeSums(SQLite::Database& database);

/// Checks that there are animals, and that the studbook has the tables that it has sums of. Where a
/// sum is missing, because another program has changed a table, has SQLite look for damage, and checks that every
/// column with a value is listed in `columns`. Does not read the tables otherwise.
void checkStructure(SQLite::Database& database);

/// Has SQLite check all of its structures, and compares all tables with their sums. Reads all.
void checkEverything(SQLite::Database& database);

/// Compares what was read of a table with its sum; nothing when it has none.
void checkSum(SQLite::Database& database, const std::string& table, const table_sum& found);

}  // namespace spx::console
