#pragma once

#include <cstdint>
#include <string>

#include "spx/core/enumerations.h"
#include "spx/support/julian_date.h"

namespace spx::console {

/// A day and how precisely it is known.
struct known_date {
  qs_lib::day_number day = 0;
  DATE_ACCURACY accuracy = DATE_ACCURACY::ACCURATE;
  std::uint64_t range = 0;  ///< days to either side, for DATE_ACCURACY::DATE_RANGE
};

/// The day as precisely as it is known: "2002-04-12", "Apr 2002", "1964", "2002-04-12 ±30 d"; "~" before it means
/// about, "?" after it a guess.
std::string dateText(const known_date& date);

}  // namespace spx::console
