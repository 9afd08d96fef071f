#include "console/studbook/copying_rows.h"

#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include "console/studbook/schema.h"
#include "console/studbook/studbook_file.h"
#include "console/tables/column_titles.h"

namespace spx::console {
namespace {

class CopyingRows : public RowSource {
 public:
  CopyingRows(std::unique_ptr<RowSource> rows, SQLite::Database& database, std::string table, std::string path)
      : rows_(std::move(rows)),
        database_(database),
        table_(std::move(table)),
        path_(std::move(path)),
        insert_(nullptr, &sqlite3_finalize) {
    titles_ = rows_->titles();
    fields_ = rows_->fields();
  }

  void settleColumns(std::span<const table_field> fields, const ColumnTitles& columns) override {
    rows_->settleColumns(fields, columns);
    checkNumber(fields.size() + columns.others().size());
    std::vector<std::string> names(titles_.size());
    for (std::size_t field = 0; field < fields.size(); ++field) {
      const std::size_t column = columns.column(field);
      if (column != ColumnTitles::NONE) {
        names[column] = fields[field].name;
      }
    }
    try {
      for (std::size_t column = 0; column < names.size(); ++column) {
        names[column] = addColumn(database_, table_, titles_[column], names[column]);
      }
    } catch (const SQLite::Exception& error) {
      failFor(path_, error);
    }
    if (table_ == "events") {
      createAnimalIndex(database_);
    }
    prepare(names);
  }

  bool next() override {
    if (!rows_->next()) {
      return false;
    }
    cells_ = rows_->row();
    // Rows of other lengths are not stored; the reader of these rows reports them.
    if (cells_.size() == titles_.size()) {
      store();
    }
    return true;
  }

  std::size_t line() const override { return rows_->line(); }

 private:
  /// Two of SQLite's columns are reserved: every table has the number of the row, and events have that of the animal.
  void checkNumber(std::size_t columns) {
    const auto most = static_cast<std::size_t>(sqlite3_limit(database_.getHandle(), SQLITE_LIMIT_COLUMN, -1)) - 2;
    if (columns > most) {
      throw TableError(1, "has " + std::to_string(titles_.size()) + " columns: a studbook file holds " +
                              std::to_string(most) + ", including the fields that the table does not have");
    }
  }

  /// An event of an animal that is not in the studbook is silently skipped here (INSERT OR IGNORE),
  /// since the reader reports it.
  void prepare(const std::vector<std::string>& names) {
    std::string columns;
    std::string values;
    for (std::size_t column = 0; column < names.size(); ++column) {
      const bool animal = table_ == "events" && names[column] == "id";
      const std::string value = "?" + std::to_string(column + 1);
      columns += (column == 0 ? "" : ", ") + (animal ? "animal" : quotedName(names[column]));
      values +=
          (column == 0 ? "" : ", ") + (animal ? "(SELECT min(\"row\") FROM animals WHERE id = " + value + ")" : value);
    }
    const std::string text = "INSERT OR IGNORE INTO " + table_ + " (" + columns + ") VALUES (" + values + ")";
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v2(database_.getHandle(), text.c_str(), -1, &prepared, nullptr);
    insert_.reset(prepared);
    if (result != SQLITE_OK) {
      fail();
    }
  }

  void store() {
    for (std::size_t cell = 0; cell < cells_.size(); ++cell) {
      // The data pointer of an empty view may be null, which SQLite would store as NULL.
      const char* text = cells_[cell].empty() ? "" : cells_[cell].data();
      if (sqlite3_bind_text64(insert_.get(), static_cast<int>(cell) + 1, text, cells_[cell].size(), SQLITE_STATIC,
                              SQLITE_UTF8) != SQLITE_OK) {
        fail();
      }
    }
    if (sqlite3_step(insert_.get()) != SQLITE_DONE) {
      fail();
    }
    sqlite3_reset(insert_.get());
  }

  [[noreturn]] void fail() { failFor(path_, SQLite::Exception(database_.getHandle())); }

  std::unique_ptr<RowSource> rows_;
  SQLite::Database& database_;
  std::string table_;
  std::string path_;
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> insert_;
};

}  // namespace

std::unique_ptr<RowSource> copyRows(std::unique_ptr<RowSource> rows, SQLite::Database& database,
                                    const std::string& table, const std::string& path) {
  return std::make_unique<CopyingRows>(std::move(rows), database, table, path);
}

}  // namespace spx::console
