#include "console/studbook_file/write_tables.h"

#include "console/failure.h"
#include "console/studbook_file/studbook_file.h"
#include "console/studbook_file/studbook_rows.h"
#include "console/studbook_file/studbook_schema.h"
#include "console/tables/table_writer.h"

namespace spx::console {
namespace {

/// The tables that the file has, by their names.
std::vector<std::string> tableNames(StudbookFile& file) {
  std::vector<std::string> names;
  for (const stored_table& table : storedTableList()) {
    if (file.hasTable(table.name)) names.emplace_back(table.name);
  }
  return names;
}

void writeTable(RowSource& rows, const std::string& file) {
  TableWriter writer(file);
  writer.addTitles(rows.titles());
  while (rows.next()) writer.addRow(rows.row());
  writer.finish();
}

}  // namespace

std::vector<std::string> tableFiles(const std::string& studbook_file) {
  StudbookFile file(studbook_file, FILE_ACCESS::READ);
  std::vector<std::string> names = tableNames(file);
  for (std::string& name : names) name += ".csv";
  return names;
}

void writeTables(const std::string& studbook_file, const std::string& directory) {
  const auto file = std::make_shared<StudbookFile>(studbook_file, FILE_ACCESS::READ);
  for (const std::string& name : tableNames(*file)) {
    try {
      writeTable(*openRows(file, name), directory + "/" + name + ".csv");
    } catch (const TableError& error) {
      throw Failure(studbook_file + " (" + name + "): " + error.what());
    }
  }
}

}  // namespace spx::console
