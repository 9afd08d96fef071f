#include "console/studbook/file_rows.h"

#include <utility>

#include "console/studbook/database_rows.h"
#include "console/studbook/rows_ahead.h"
#include "console/studbook/schema.h"
#include "console/studbook/table_sums.h"

namespace spx::console {
namespace {

/// Rows that compare their sum with the stored one at the end, for a file that is open for reading.
class CheckedRows : public RowSource {
 public:
  CheckedRows(std::shared_ptr<StudbookFile> file, const std::string& table)
      : file_(std::move(file)), table_(table), rows_(file_->database(), table) {
    titles_ = rows_.titles();
    fields_ = rows_.fields();
  }

  bool next() override {
    if (rows_.next()) {
      cells_ = rows_.row();
      return true;
    }
    if (file_->access() == FILE_ACCESS::READ) {
      try {
        checkSum(file_->database(), table_, rows_.sum());
      } catch (const TableError& error) {
        throw TableError(0, std::string("is damaged: ") + error.what());
      }
    }
    return false;
  }

  std::size_t line() const override { return rows_.line(); }
  std::size_t animalRow() const override { return rows_.animalRow(); }

 private:
  std::shared_ptr<StudbookFile> file_;
  std::string table_;
  DatabaseRows rows_;
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
  return readAhead(std::make_unique<CheckedRows>(file, table));
}

studbook_tables storedTables(const std::shared_ptr<StudbookFile>& file) {
  studbook_tables tables;
  tables.file = file->path();
  tables.format = "SQLite";
  for (const stored_table& table : storedTableList()) {
    tables.*table.source = source(file, table.name);
  }
  return tables;
}

}  // namespace spx::console
