#include "console/studbook/write_tables.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "console/base/failure.h"
#include "console/studbook/file_rows.h"
#include "console/studbook/schema.h"
#include "console/studbook/studbook_file.h"
#include "console/tables/table_writer.h"
#include "console/tables/workbook_writer.h"

namespace spx::console {
namespace {

/// The tables that the file has, by their names.
std::vector<std::string> tableNames(StudbookFile& file) {
  std::vector<std::string> names;
  for (const stored_table& table : storedTableList()) {
    if (file.hasTable(table.name)) {
      names.emplace_back(table.name);
    }
  }
  return names;
}

/// Removes the prefix from the IDs in rows.
class PrefixCutter {
 public:
  PrefixCutter(const RowSource& rows, std::string prefix) : prefix_(std::move(prefix)) {
    for (std::size_t column = 0; column < rows.fields().size() && !prefix_.empty(); ++column) {
      const std::string& field = rows.fields()[column];
      if (field == "id" || field == "sire" || field == "dam") {
        id_columns_.push_back(column);
      }
    }
  }

  std::span<const std::string_view> cut(std::span<const std::string_view> row) {
    if (id_columns_.empty()) {
      return row;
    }
    row_.assign(row.begin(), row.end());
    for (const std::size_t column : id_columns_) {
      if (row_[column].starts_with(prefix_)) {
        row_[column].remove_prefix(prefix_.size());
      }
    }
    return row_;
  }

 private:
  std::string prefix_;
  std::vector<std::size_t> id_columns_;
  std::vector<std::string_view> row_;
};

/// Passes every row of a table to `add`, after calling `begin` with its columns.
template <typename Begin, typename Add>
void copyTable(const std::shared_ptr<StudbookFile>& file, const std::string& table, const std::string& id_prefix,
               Begin begin, Add add) {
  try {
    const std::unique_ptr<RowSource> rows = openRows(file, table);
    begin(*rows);
    const bool has_animals = table == "animals" || table == "events";
    PrefixCutter cutter(*rows, has_animals ? id_prefix : std::string());
    while (rows->next()) {
      add(cutter.cut(rows->row()));
    }
  } catch (const TableError& error) {
    throw Failure(file->path() + " (" + table + "): " + error.what());
  }
}

void writeCsv(const std::shared_ptr<StudbookFile>& file, const std::string& table, const std::string& target,
              const tables_form& form) {
  TableWriter writer(target, form.csv);
  copyTable(
      file, table, form.id_prefix, [&](const RowSource& rows) { writer.addTitles(rows.titles()); },
      [&](auto row) { writer.addRow(row); });
  writer.finish();
}

/// IDs, locations and words are texts; user-defined columns may hold numbers.
SHEET_COLUMN sheetColumn(std::string_view field) {
  if (field.ends_with("date")) {
    return SHEET_COLUMN::DATE;
  }
  const bool is_number = field.starts_with("user_") || field.starts_with("g_") || field == "fcoef" ||
                         field.ends_with("range") || field == "latitude" || field == "longitude";
  return is_number ? SHEET_COLUMN::NUMBER : SHEET_COLUMN::TEXT;
}

void writeWorkbook(const std::shared_ptr<StudbookFile>& file, const std::string& target, const std::string& id_prefix) {
  WorkbookWriter writer(target);
  for (const std::string& table : tableNames(*file)) {
    const auto begin = [&](const RowSource& rows) {
      std::vector<SHEET_COLUMN> columns;
      for (const std::string& field : rows.fields()) {
        columns.push_back(sheetColumn(field));
      }
      writer.beginSheet(table, rows.titles(), std::move(columns));
    };
    copyTable(file, table, id_prefix, begin, [&](auto row) { writer.addRow(row); });
  }
  writer.finish();
}

std::string workbookName(const std::string& studbook_file) {
  return std::filesystem::path(studbook_file).stem().string() + ".xlsx";
}

}  // namespace

std::vector<std::string> possibleTableFiles() {
  std::vector<std::string> names;
  for (const stored_table& table : storedTableList()) {
    names.push_back(std::string(table.name) + ".csv");
  }
  return names;
}

std::vector<std::string> tableFiles(const std::string& studbook_file, const tables_form& form) {
  StudbookFile file(studbook_file, FILE_ACCESS::READ);
  if (form.as_workbook) {
    return {workbookName(studbook_file)};
  }
  std::vector<std::string> names = tableNames(file);
  for (std::string& name : names) {
    name += ".csv";
  }
  return names;
}

void writeTables(const std::string& studbook_file, const std::string& directory, const tables_form& form) {
  const auto file = std::make_shared<StudbookFile>(studbook_file, FILE_ACCESS::READ);
  const std::filesystem::path target = directory;
  if (form.as_workbook) {
    return writeWorkbook(file, target / workbookName(studbook_file), form.id_prefix);
  }
  for (const std::string& name : tableNames(*file)) {
    writeCsv(file, name, target / (name + ".csv"), form);
  }
}

}  // namespace spx::console
