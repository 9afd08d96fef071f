#pragma once

#include <string>

#include "spx/support/export.h"
#include "spx/support/julian_date.h"

namespace spx {

/// Facts about the studbook as a whole. The host sets them; reports show them in their head.
struct Studbook {
  qs_lib::day_number first_date = 0;   ///< first date of data recorded; 0 is unknown
  qs_lib::day_number update_date = 0;  ///< date of the last update; 0 is unknown
  std::string name;                    ///< as reports show it
  std::string format;                  ///< empty: the active project's STUDBOOK_FORMAT is reported
  std::string db_system;               ///< empty: the active project's DB_SYSTEM is reported
};

/// The studbook in use.
extern SPX_EXPORT Studbook Book;

}  // namespace spx
