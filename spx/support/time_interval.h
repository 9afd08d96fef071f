#pragma once

#include <cstdint>

namespace qs_lib {
/// The steps between two censuses, from shortest to longest. Files keep the numbers.
enum class TIME_INTERVAL : std::uint32_t {
  DAY,
  WEEK,
  MONTH,
  QUARTER,
  BIANNUAL,  ///< twice a year
  ANNUAL,
  BIENNIAL,  ///< every second year
  FIVE_YEAR
};
}  // namespace qs_lib
