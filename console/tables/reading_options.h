#pragma once

#include <cstdint>
#include <string>

#include "console/tables/date_reading.h"

namespace spx::console {

/// What to do with a row such as "Total".
enum class FOOTER : std::uint8_t { ASK, SKIP, KEEP };

/// The user's options for reading tables.
struct reading_options {
  DATE_ORDER dates = DATE_ORDER::UNKNOWN;
  FOOTER footer = FOOTER::ASK;
  std::string encoding = {};  ///< a name that iconv knows; empty: detected
  std::string sheet = {};     ///< of the animals in a workbook; empty: detected
};

}  // namespace spx::console
