#pragma once

#include <string>
#include <vector>

namespace spx::console {

/// The names of the tables that a studbook file holds, as writeTables writes them: animals.csv and
/// the others that there are. Throws Failure.
std::vector<std::string> tableFiles(const std::string& studbook_file);

/// Writes the tables of a studbook file into a directory: animals.csv, and events.csv,
/// locations.csv and programs.csv where it has them. Titles, cells and their order are those that
/// were imported, so importing the directory gives the same studbook. All are of one state, each
/// replaces a former file as a whole. Throws Failure.
/// @param id_prefix  taken from the beginning of the IDs and parents that have it, as withIdPrefix has put it there
void writeTables(const std::string& studbook_file, const std::string& directory, const std::string& id_prefix = {});

}  // namespace spx::console
