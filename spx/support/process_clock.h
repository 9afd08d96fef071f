#pragma once

#include <cstdint>

#include "spx/support/export.h"

namespace qs_lib {
/// Measures the processor time that the process uses, in ticks of one microsecond.
struct SPX_EXPORT process_timer {
  std::uint64_t start = 0;  ///< when it began
  std::uint64_t end = 0;    ///< when it last stopped; equal to start before that
  double excluded = 0;      ///< ticks that do not count

  /// Begins a new measurement, with nothing excluded; seconds() is 0 until stop().
  void restart();

  /// Sets the end to the present time.
  void stop();

  /// The seconds between restart() and the last stop(), less what is excluded.
  double seconds() const;
};
}  // namespace qs_lib
