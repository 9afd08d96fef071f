#include "spx/support/text_hash.h"

#include <exception>
#include <random>

namespace qs_lib {
namespace {

std::uint64_t randomOddNumber() {
  std::random_device random;
  return std::uint64_t{random()} << 32 | random() | 1;
}

/// The seed is fixed where the system has no source of random numbers; hashing still works.
hash_seed drawSeed() {
  try {
    return {randomOddNumber(), randomOddNumber()};
  } catch (const std::exception&) {
    return {0xD1B54A32D192ED03, 0x9E3779B97F4A7C15};
  }
}

}  // namespace

const hash_seed& processSeed() {
  static const hash_seed seed = drawSeed();
  return seed;
}

}  // namespace qs_lib
