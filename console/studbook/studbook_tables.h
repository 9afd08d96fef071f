#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "console/tables/column_titles.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// The tables of a studbook, wherever they are kept.
struct studbook_tables {
  std::string file;    ///< the studbook file, or the table of animals
  std::string format;  ///< as reports show it
  table_source animals;
  table_source events;
  table_source locations;
  table_source programs;
  std::vector<title_choice> titles;  ///< of the table of animals

  /// Puts into the studbook in use what the tables give, where that is kept beside them; else null.
  /// Tells how many records there are by and by. @return false when the tables have to be read
  std::function<bool(const std::function<void(std::size_t)>& note)> restore;

  /// Hears that all tables have been read without a fault, and where their first record is; or
  /// null.
  std::function<void(std::size_t first)> keep;
};

}  // namespace spx::console
