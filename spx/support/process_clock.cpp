#include "spx/support/process_clock.h"

#include <ctime>

namespace qs_lib {
namespace {
constexpr double TICKS_PER_SECOND = 1000000;
}

void process_timer::restart() {
  start = static_cast<std::uint64_t>(std::clock());
  end = start;
  excluded = 0;
}

void process_timer::stop() {
  end = static_cast<std::uint64_t>(std::clock());
}

double process_timer::seconds() const {
  return (static_cast<double>(end - start) - excluded) / TICKS_PER_SECOND;
}
}  // namespace qs_lib
