#pragma once

#include <string>
#include <vector>

namespace spx::console {

/// The names of all tables that a studbook file can hold, as writeTables writes them, animals.csv
/// first.
std::vector<std::string> possibleTableFiles();

/// The names of those that this studbook file holds. Throws Failure.
std::vector<std::string> tableFiles(const std::string& studbook_file);

/// Writes the tables of a studbook file into a directory: animals.csv, and events.csv,
/// locations.csv and programs.csv where it has them. Titles, cells and their order are those that
/// were imported, so importing the directory gives the same studbook. All show one state of the
/// studbook; each replaces an existing file as a whole. Throws Failure.
/// @param id_prefix  removed from the IDs and parents that begin with it, where withIdPrefix has put it
void writeTables(const std::string& studbook_file, const std::string& directory, const std::string& id_prefix = {});

}  // namespace spx::console
