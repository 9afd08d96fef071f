#pragma once

#include <cstdint>
#include <random>

/// Random whole numbers that are the same with every compiler.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}

  /// A whole number from 0 to limit - 1.
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(((engine_() >> 32U) * limit) >> 32U); }
  bool permille(std::uint32_t chance) { return below(1000) < chance; }
  std::int32_t between(std::int32_t low, std::int32_t high) {
    return low + static_cast<std::int32_t>(below(static_cast<std::uint32_t>(high - low + 1)));
  }

 private:
  std::mt19937_64 engine_;
};
