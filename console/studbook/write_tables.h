#pragma once

#include <string>
#include <vector>

#include "console/tables/table_writer.h"

namespace spx::console {

/// How tables are written: as CSV files, or as one workbook.
struct tables_form {
  bool as_workbook = false;
  std::string id_prefix = {};  ///< removed from the IDs and parents that begin with it
  csv_form csv = {};
};

/// The names of all CSV files that tables can be written to, animals.csv first.
std::vector<std::string> possibleTableFiles();

/// The names of the files that writeTables makes of a studbook file: animals.csv and the other
/// existing tables, or a workbook with the name of the studbook. Throws Failure.
std::vector<std::string> tableFiles(const std::string& studbook_file, const tables_form& form = {});

/// Writes the tables of a studbook file into a directory: animals.csv, and events.csv,
/// locations.csv and programs.csv where it has them, or a workbook with a sheet for each. Titles,
/// cells and their order are those that were imported, so importing them gives the same studbook.
/// All files show the same state of the studbook, and each replaces an existing file as a whole. Throws Failure.
void writeTables(const std::string& studbook_file, const std::string& directory, const tables_form& form = {});

}  // namespace spx::console
