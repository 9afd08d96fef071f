#include "console/studbook/file_rows.h"

#include <utility>
#include <vector>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include "console/studbook/rows_ahead.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

using statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

/// An event has the row of its animal; its table shows the ID.
std::string expression(const std::string& table, const std::string& field) {
  if (table == "events" && field == "id") {
    return "(SELECT id FROM animals WHERE animals.\"row\" = events.animal)";
  }
  // Without the table's name an unknown column would be taken as a text.
  return table + "." + quotedName(field);
}

class StudbookRows : public RowSource {
 public:
  StudbookRows(std::shared_ptr<StudbookFile> file, const std::string& table)
      : file_(std::move(file)), rows_(nullptr, &sqlite3_finalize), has_animal_(table == "events") {
    std::string query = has_animal_ ? "SELECT \"row\", animal" : "SELECT \"row\"";
    for (const stored_column& column : readColumns(table)) {
      query += ", " + expression(table, column.field);
      titles_.push_back(column.title);
      fields_.push_back(column.field);
    }
    prepare(query + " FROM " + table + " ORDER BY \"row\"");
    texts_.resize(titles_.size());
    cells_ = texts_;
  }

  bool next() override {
    const int result = sqlite3_step(rows_.get());
    if (result == SQLITE_ROW) {
      for (std::size_t cell = 0; cell < texts_.size(); ++cell) {
        texts_[cell] = read(cell);
      }
      return true;
    }
    if (result != SQLITE_DONE) {
      fail();
    }
    return false;
  }

  std::size_t line() const override { return static_cast<std::size_t>(sqlite3_column_int64(rows_.get(), 0)); }

  std::size_t animalRow() const override {
    return has_animal_ ? static_cast<std::size_t>(sqlite3_column_int64(rows_.get(), 1)) : 0;
  }

 private:
  std::vector<stored_column> readColumns(const std::string& table) {
    try {
      return storedColumns(file_->database(), table);
    } catch (const SQLite::Exception& error) {
      throw TableError(0, error.what());
    }
  }

  void prepare(const std::string& query) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v2(handle(), query.c_str(), -1, &prepared, nullptr);
    rows_.reset(prepared);
    if (result != SQLITE_OK) {
      fail();
    }
  }

  /// The bytes where SQLite has them; as text it would copy those without a final NUL. The value
  /// may be asked itself, since the connection belongs to one thread.
  std::string_view read(std::size_t cell) {
    sqlite3_value* value = sqlite3_column_value(rows_.get(), static_cast<int>(cell) + (has_animal_ ? 2 : 1));
    const void* bytes = sqlite3_value_blob(value);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_value_bytes(value))};
  }

  sqlite3* handle() { return file_->database().getHandle(); }
  [[noreturn]] void fail() { throw TableError(0, sqlite3_errmsg(handle())); }

  std::shared_ptr<StudbookFile> file_;
  statement rows_;   // before the file is closed
  bool has_animal_;  ///< the second column is the row of the animal
  std::vector<std::string_view> texts_;
};

table_source source(const std::shared_ptr<StudbookFile>& file, const std::string& table) {
  if (!file->hasTable(table)) {
    return {};
  }
  return {file->path() + " (" + table + ")", [=] { return openRows(file, table); },
          [=] { return file->countRows(table); }};
}

}  // namespace

std::unique_ptr<RowSource> openRows(const std::shared_ptr<StudbookFile>& file, const std::string& table) {
  return readAhead(std::make_unique<StudbookRows>(file, table));
}

studbook_tables storedTables(const std::shared_ptr<StudbookFile>& file) {
  return {file->path(),
          "SQLite",
          source(file, "animals"),
          source(file, "events"),
          source(file, "locations"),
          source(file, "programs"),
          {},
          {}};
}

}  // namespace spx::console
