#pragma once

#include <memory>
#include <string>

#include "console/tables/reading_notes.h"
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
  std::shared_ptr<ReadingNotes> notes = nullptr;  ///< how tables were read; null for a studbook file
};

}  // namespace spx::console
