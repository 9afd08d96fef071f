#pragma once

#include <string>
#include <vector>

#include "console/tables/column_titles.h"
#include "console/tables/reading_options.h"

namespace spx::console {

/// The files of a studbook, as the command line gives them. Empty names are files not given.
struct studbook_files {
  std::string animals;
  std::string events;
  std::string locations;
  std::string programs;
  std::vector<title_choice> titles;  ///< of the table of animals
  std::string id_prefix = {};        ///< put before every ID that is read; see withIdPrefix
  reading_options reading = {};
};

/// The same with a directory replaced by the tables in it: animals.csv, and events.csv,
/// locations.csv and programs.csv where they exist and no other files are given for them. Beside a
/// table that is named itself nothing is picked up. Throws Failure when the directory has no
/// animals.csv.
studbook_files resolveFiles(studbook_files files);

}  // namespace spx::console
