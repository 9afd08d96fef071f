#include "console/edits/studbook_edit.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/support/text.h"

#include "console/studbook/file_rows.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

/// Runs an action; an SQLite error becomes a Failure that names the file.
template <typename Action>
auto onFile(const std::string& path, Action action) {
  try {
    return action();
  } catch (const SQLite::Exception& error) {
    failFor(path, error);
  }
}

std::vector<row_number> rowsOf(SQLite::Statement& query) {
  std::vector<row_number> rows;
  while (query.executeStep()) {
    rows.push_back(query.getColumn(0).getInt64());
  }
  return rows;
}

/// The first row number after all existing and removed rows.
row_number freeRow(SQLite::Database& database, const std::string& table) {
  SQLite::Statement query(database, "SELECT 1 + max(coalesce((SELECT max(\"row\") FROM " + table +
                                        "), 0), coalesce((SELECT max(\"row\") FROM change_cells "
                                        "WHERE of_table = ? AND field = 'row'), 0))");
  query.bind(1, table);
  query.executeStep();
  return query.getColumn(0).getInt64();
}

}  // namespace

StudbookEdit::StudbookEdit(const std::string& path, const change_note& note, std::int64_t undoes)
    : file_(std::make_shared<StudbookFile>(path, FILE_ACCESS::WRITE)) {
  onFile(path, [&] {
    database().exec("PRAGMA defer_foreign_keys = ON");
    number_ = openChange(database(), note, undoes);
  });
}

std::vector<row_number> StudbookEdit::find(const std::string& table, const std::string& field,
                                           const std::string& value) {
  return onFile(path(), [&] {
    SQLite::Statement query(database(), "SELECT \"row\" FROM " + table + " WHERE " + table + "." + quotedName(field) +
                                            " = ? ORDER BY \"row\"");
    query.bind(1, value);
    return rowsOf(query);
  });
}

std::vector<row_number> StudbookEdit::rows(const std::string& table) {
  return onFile(path(), [&] {
    SQLite::Statement query(database(), "SELECT \"row\" FROM " + table + " ORDER BY \"row\"");
    return rowsOf(query);
  });
}

bool StudbookEdit::hasRow(const std::string& table, row_number row) {
  return onFile(path(), [&] {
    SQLite::Statement query(database(), "SELECT 1 FROM " + table + " WHERE \"row\" = ?");
    query.bind(1, row);
    return query.executeStep();
  });
}

std::string StudbookEdit::cell(const std::string& table, row_number row, const std::string& field) {
  return onFile(path(), [&] {
    SQLite::Statement query(database(), "SELECT CAST(" + table + "." + quotedName(field) + " AS TEXT) FROM " + table +
                                            " WHERE \"row\" = ?");
    query.bind(1, row);
    return query.executeStep() ? query.getColumn(0).getString() : std::string();
  });
}

void StudbookEdit::set(const std::string& table, row_number row, const std::string& field, std::string_view value) {
  onFile(path(), [&] {
    SQLite::Statement change(database(), "UPDATE " + table + " SET " + quotedName(field) + " = ? WHERE \"row\" = ?");
    change.bind(1, std::string(value));
    change.bind(2, row);
    change.exec();
  });
}

row_number StudbookEdit::insert(const std::string& table, const std::vector<field_value>& values) {
  const row_number row = onFile(path(), [&] { return freeRow(database(), table); });
  insertAt(table, row, values);
  return row;
}

void StudbookEdit::insertAt(const std::string& table, row_number row, const std::vector<field_value>& values) {
  onFile(path(), [&] {
    std::string names = "\"row\"";
    std::string places = "?";
    for (const field_value& each : values) {
      names += ", " + quotedName(each.field);
      places += ", ?";
    }
    SQLite::Statement change(database(), "INSERT INTO " + table + " (" + names + ") VALUES (" + places + ")");
    change.bind(1, row);
    for (std::size_t value = 0; value < values.size(); ++value) {
      change.bind(static_cast<int>(value) + 2, values[value].value);
    }
    change.exec();
  });
}

void StudbookEdit::remove(const std::string& table, row_number row) {
  onFile(path(), [&] {
    SQLite::Statement change(database(), "DELETE FROM " + table + " WHERE \"row\" = ?");
    change.bind(1, row);
    change.exec();
  });
}

void StudbookEdit::needField(const std::string& table, const std::string& field) {
  onFile(path(), [&] {
    for (const stored_column& column : storedColumns(database(), table)) {
      if (column.field == field) {
        return;
      }
    }
    addColumn(database(), table, field, field);
  });
}

std::string StudbookEdit::addUserField(const std::string& table, const std::string& title) {
  return onFile(path(), [&] {
    std::string name = addColumn(database(), table, title, "");
    createTriggers(database());
    return name;
  });
}

std::vector<journal_cell> StudbookEdit::cells() {
  return onFile(path(), [&] { return netCells(readCells(database(), number_)); });
}

studbook_tables StudbookEdit::tables() {
  return storedTables(file_);
}

void StudbookEdit::commit() {
  onFile(path(), [&] { closeChange(database()); });
  file_->commit();
}

}  // namespace spx::console
