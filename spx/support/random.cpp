#include "spx/support/random.h"

#include <cmath>

namespace qs_lib {
RandomSource Random;

double RandomSource::uniform() {
  const double lower = static_cast<double>(engine());
  const double upper = static_cast<double>(engine());
  const double number = std::ldexp(lower + std::ldexp(upper, 32), -64);
  // The sum is rounded to 53 bits, so the largest ones would be rounded up to 1.
  return number < 1 ? number : std::nextafter(1.0, 0.0);
}
}  // namespace qs_lib
