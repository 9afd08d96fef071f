#include "console/studbook/write_tables.h"

#include <filesystem>

#include "console/base/failure.h"
#include "console/studbook/file_rows.h"
#include "console/studbook/schema.h"
#include "console/studbook/studbook_file.h"
#include "console/tables/table_writer.h"

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

void writeTable(const std::shared_ptr<StudbookFile>& file, const std::string& table, const std::string& target) {
  try {
    const std::unique_ptr<RowSource> rows = openRows(file, table);
    TableWriter writer(target);
    writer.addTitles(rows->titles());
    while (rows->next()) {
      writer.addRow(rows->row());
    }
    writer.finish();
  } catch (const TableError& error) {
    throw Failure(file->path() + " (" + table + "): " + error.what());
  }
}

}  // namespace

std::vector<std::string> tableFiles(const std::string& studbook_file) {
  StudbookFile file(studbook_file, FILE_ACCESS::READ);
  std::vector<std::string> names = tableNames(file);
  for (std::string& name : names) {
    name += ".csv";
  }
  return names;
}

void writeTables(const std::string& studbook_file, const std::string& directory) {
  const auto file = std::make_shared<StudbookFile>(studbook_file, FILE_ACCESS::READ);
  for (const std::string& name : tableNames(*file)) {
    writeTable(file, name, std::filesystem::path(directory) / (name + ".csv"));
  }
}

}  // namespace spx::console
