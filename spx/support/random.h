#pragma once

#include <cstdint>
#include <random>

#include "spx/support/export.h"

namespace qs_lib {
/// A source of random numbers. It starts from the seed std::mt19937::default_seed, so that every
/// run of a program gives the same numbers unless the host sets another seed.
class SPX_EXPORT RandomSource {
 public:
  /// Restarts the sequence that belongs to the seed.
  void setSeed(std::uint32_t seed) { engine.seed(seed); }

  /// The next number of a uniform distribution, at least 0 and below 1. It takes two outputs of the
  /// engine; the first one is the lower half.
  double uniform();

  std::mt19937 engine;  ///< for distributions of the host's own
};

/// The random source of the process.
extern SPX_EXPORT RandomSource Random;
}  // namespace qs_lib
