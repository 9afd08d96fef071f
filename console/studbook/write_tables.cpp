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

/// Takes the prefix from the IDs of rows.
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

void writeTable(const std::shared_ptr<StudbookFile>& file, const std::string& table, const std::string& target,
                const std::string& id_prefix) {
  try {
    const std::unique_ptr<RowSource> rows = openRows(file, table);
    TableWriter writer(target);
    writer.addTitles(rows->titles());
    PrefixCutter cutter(*rows, id_prefix);
    while (rows->next()) {
      writer.addRow(cutter.cut(rows->row()));
    }
    writer.finish();
  } catch (const TableError& error) {
    throw Failure(file->path() + " (" + table + "): " + error.what());
  }
}

}  // namespace

std::vector<std::string> possibleTableFiles() {
  std::vector<std::string> names;
  for (const stored_table& table : storedTableList()) {
    names.push_back(std::string(table.name) + ".csv");
  }
  return names;
}

std::vector<std::string> tableFiles(const std::string& studbook_file) {
  StudbookFile file(studbook_file, FILE_ACCESS::READ);
  std::vector<std::string> names = tableNames(file);
  for (std::string& name : names) {
    name += ".csv";
  }
  return names;
}

void writeTables(const std::string& studbook_file, const std::string& directory, const std::string& id_prefix) {
  const auto file = std::make_shared<StudbookFile>(studbook_file, FILE_ACCESS::READ);
  for (const std::string& name : tableNames(*file)) {
    const bool has_animals = name == "animals" || name == "events";
    writeTable(file, name, std::filesystem::path(directory) / (name + ".csv"), has_animals ? id_prefix : std::string());
  }
}

}  // namespace spx::console
