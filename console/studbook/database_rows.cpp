#include "console/studbook/database_rows.h"

#include <algorithm>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include "spx/support/text_hash.h"

#include "console/studbook/schema.h"

namespace spx::console {
namespace {

/// The sums are stored in files, so this seed must never change.
constexpr qs_lib::hash_seed SUM_SEED = {0x9E3779B97F4A7C15, 0xD1B54A32D192ED03};

/// Events store the row of their animal; reading them gives its ID.
std::string expression(const std::string& table, const std::string& field) {
  if (table == "events" && field == "id") {
    return "(SELECT id FROM animals WHERE animals.\"row\" = events.animal)";
  }
  // Without the table's name SQLite would take an unknown column name in quotes as a text.
  return table + "." + quotedName(field);
}

}  // namespace

DatabaseRows::DatabaseRows(SQLite::Database& database, const std::string& table)
    : database_(database), rows_(nullptr, &sqlite3_finalize), has_animal_(table == "events") {
  readColumns(table);
  std::string query = has_animal_ ? "SELECT \"row\", animal" : "SELECT \"row\"";
  for (const std::string& field : fields_) {
    query += ", " + expression(table, field);
  }
  prepare(query + " FROM " + table + " ORDER BY \"row\"");
  if (has_animal_) {
    findGaps();
  }
  texts_.resize(titles_.size());
  cells_ = texts_;
}

bool DatabaseRows::next() {
  const int result = sqlite3_step(rows_.get());
  if (result == SQLITE_ROW) {
    for (std::size_t cell = 0; cell < texts_.size(); ++cell) {
      texts_[cell] = read(cell);
      addToSum(texts_[cell]);
    }
    ++sum_.rows;
    return true;
  }
  if (result != SQLITE_DONE) {
    fail();
  }
  return false;
}

std::size_t DatabaseRows::line() const {
  return static_cast<std::size_t>(sqlite3_column_int64(rows_.get(), 0));
}

std::size_t DatabaseRows::animalRow() const {
  if (!has_animal_) {
    return 0;
  }
  const std::int64_t animal = sqlite3_column_int64(rows_.get(), 1);
  if (animals_.empty()) {
    return static_cast<std::size_t>(animal);
  }
  return static_cast<std::size_t>(std::upper_bound(animals_.begin(), animals_.end(), animal) - animals_.begin());
}

/// Removed animals leave gaps in the row numbers; reads the numbers when there are any.
void DatabaseRows::findGaps() {
  try {
    if (database_.execAndGet("SELECT count(*) = coalesce(max(\"row\"), 0) FROM animals").getInt() != 0) {
      return;
    }
    SQLite::Statement query(database_, "SELECT \"row\" FROM animals ORDER BY \"row\"");
    while (query.executeStep()) {
      animals_.push_back(query.getColumn(0).getInt64());
    }
  } catch (const SQLite::Exception& error) {
    throw TableError(0, error.what());
  }
}

void DatabaseRows::readColumns(const std::string& table) {
  try {
    for (const stored_column& column : storedColumns(database_, table)) {
      addToSum(column.title);
      addToSum(column.field);
      titles_.push_back(column.title);
      fields_.push_back(column.field);
    }
  } catch (const SQLite::Exception& error) {
    throw TableError(0, error.what());
  }
}

void DatabaseRows::prepare(const std::string& query) {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database_.getHandle(), query.c_str(), -1, &prepared, nullptr);
  rows_.reset(prepared);
  if (result != SQLITE_OK) {
    fail();
  }
}

/// The bytes of a cell, without a copy: asking for text would copy values that have no final NUL.
/// Using the unprotected value is safe, since the connection belongs to one thread.
std::string_view DatabaseRows::read(std::size_t cell) const {
  sqlite3_value* value = sqlite3_column_value(rows_.get(), static_cast<int>(cell) + (has_animal_ ? 2 : 1));
  const void* bytes = sqlite3_value_blob(value);
  return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void DatabaseRows::addToSum(std::string_view text) {
  sum_.sum = qs_lib::hashWords(sum_.sum, qs_lib::hashText(text, SUM_SEED), SUM_SEED);
}

void DatabaseRows::fail() const {
  throw TableError(0, sqlite3_errmsg(database_.getHandle()));
}

}  // namespace spx::console
