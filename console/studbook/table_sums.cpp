#include "console/studbook/table_sums.h"

#include <algorithm>
#include <optional>
#include <vector>

#include <SQLiteCpp/SQLiteCpp.h>

#include "console/base/quoted_text.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

constexpr const char* CHANGES[] = {"INSERT", "UPDATE", "DELETE"};

bool hasSums(SQLite::Database& database) {
  return database.tableExists("sums");
}

/// Creates the table of sums, and triggers that delete all sums when any program changes a table.
/// Damage to the file does not run triggers.
void createSums(SQLite::Database& database) {
  database.exec(
      "CREATE TABLE IF NOT EXISTS sums (of_table TEXT PRIMARY KEY, \"rows\" INTEGER NOT NULL, sum INTEGER NOT NULL) "
      "STRICT, WITHOUT ROWID");
  std::vector<std::string> tables = {"columns"};
  for (const stored_table& table : storedTableList()) {
    tables.emplace_back(table.name);
  }
  for (const std::string& table : tables) {
    for (const char* change : CHANGES) {
      database.exec("CREATE TRIGGER IF NOT EXISTS spx_sums_" + table + "_" + change + " AFTER " + change + " ON " +
                    table + " BEGIN DELETE FROM sums; END");
    }
  }
}

/// The tables that have columns.
std::vector<std::string> tableNames(SQLite::Database& database) {
  std::vector<std::string> names;
  for (const stored_table& table : storedTableList()) {
    if (!storedColumns(database, table.name).empty()) {
      names.emplace_back(table.name);
    }
  }
  return names;
}

std::vector<std::string> summedTables(SQLite::Database& database) {
  std::vector<std::string> names;
  if (hasSums(database)) {
    SQLite::Statement query(database, "SELECT of_table FROM sums");
    while (query.executeStep()) {
      names.push_back(query.getColumn(0));
    }
  }
  return names;
}

std::optional<table_sum> storedSum(SQLite::Database& database, const std::string& table) {
  if (!hasSums(database)) {
    return std::nullopt;
  }
  SQLite::Statement query(database, "SELECT \"rows\", sum FROM sums WHERE of_table = ?");
  query.bind(1, table);
  if (!query.executeStep()) {
    return std::nullopt;
  }
  return table_sum{query.getColumn(0).getInt64(), static_cast<std::uint64_t>(query.getColumn(1).getInt64())};
}

table_sum computeSum(SQLite::Database& database, const std::string& table) {
  DatabaseRows rows(database, table);
  while (rows.next()) {
  }
  return rows.sum();
}

void quickCheck(SQLite::Database& database) {
  const std::string found = database.execAndGet("PRAGMA quick_check(1)").getString();
  if (found != "ok") {
    throw TableError(0, found);
  }
}

/// Throws when a column that `columns` does not list has values, since nothing would read them. The
/// column of a removed field stays in the table, but is empty.
void checkColumnsListed(SQLite::Database& database, const std::string& table) {
  std::vector<std::string> listed;
  for (const stored_column& column : storedColumns(database, table)) {
    listed.push_back(table == "events" && column.field == "id" ? "animal" : column.field);
  }
  for (const std::string& name : databaseColumns(database, table)) {
    const bool is_listed = std::find(listed.begin(), listed.end(), name) != listed.end();
    const std::string filled = "SELECT EXISTS (SELECT 1 FROM " + table + " WHERE " + quotedName(name) + " <> '')";
    if (!is_listed && database.execAndGet(filled).getInt() != 0) {
      throw TableError(0, "its table " + quotedText(table) + " has values in the column " + quotedText(name) +
                              ", which its table \"columns\" does not list");
    }
  }
}

/// Runs a check; an error from SQLite counts as damage too.
template <class Check>
void reporting(Check check) {
  try {
    check();
  } catch (const SQLite::Exception& error) {
    throw TableError(0, error.what());
  }
}

}  // namespace

void storeSums(SQLite::Database& database) {
  createSums(database);
  database.exec("DELETE FROM sums");
  SQLite::Statement insert(database, "INSERT INTO sums VALUES (?, ?, ?)");
  for (const std::string& table : tableNames(database)) {
    const table_sum sum = computeSum(database, table);
    insert.bind(1, table);
    insert.bind(2, sum.rows);
    insert.bind(3, static_cast<std::int64_t>(sum.sum));
    insert.exec();
    insert.reset();
  }
}

void checkStructure(SQLite::Database& database) {
  reporting([&] {
    const std::vector<std::string> names = tableNames(database);
    const auto has = [&](const std::string& name) {
      return std::find(names.begin(), names.end(), name) != names.end();
    };
    if (!has("animals")) {
      throw TableError(0, "it has no table of animals");
    }
    const std::vector<std::string> summed = summedTables(database);
    for (const std::string& name : summed) {
      if (!has(name)) {
        throw TableError(0, "the columns of its table " + quotedText(name) + " are missing");
      }
    }
    if (summed.size() != names.size()) {
      quickCheck(database);
      for (const stored_table& table : storedTableList()) {
        checkColumnsListed(database, table.name);
      }
    }
  });
}

void checkEverything(SQLite::Database& database) {
  reporting([&] {
    quickCheck(database);
    for (const std::string& table : tableNames(database)) {
      checkSum(database, table, computeSum(database, table));
    }
  });
}

void checkSum(SQLite::Database& database, const std::string& table, const table_sum& found) {
  reporting([&] {
    const std::optional<table_sum> stored = storedSum(database, table);
    if (!stored || *stored == found) {
      return;
    }
    const std::string what = stored->rows == found.rows
                                 ? "its content differs from what was stored"
                                 : std::to_string(stored->rows) + " rows of " + table + " were stored, " +
                                       std::to_string(found.rows) + " were found";
    throw TableError(0, what);
  });
}

}  // namespace spx::console
