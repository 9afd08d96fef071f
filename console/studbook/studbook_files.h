#pragma once

#include <string>
#include <vector>

#include "console/tables/column_titles.h"
#include "console/tables/reading_options.h"

namespace spx::console {

/// The files of a studbook, as the command line gives them; an empty name means that the file is not given.
struct studbook_files {
  std::string animals;
  std::string events;
  std::string locations;
  std::string programs;
  std::vector<title_choice> titles;  ///< as parseTitleChoice has them
  std::string id_prefix = {};        ///< put before every ID that is read; see withIdPrefix
  reading_options reading = {};
};

}  // namespace spx::console
