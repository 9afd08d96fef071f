#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "spx/support/export.h"

namespace qs_lib {

/// The secrets of a hash: two random odd numbers.
using hash_seed = std::array<std::uint64_t, 2>;

/// The seed of this process, drawn at the first call. Whoever writes a table cannot know it, and so
/// cannot choose IDs that all collide.
SPX_EXPORT const hash_seed& processSeed();

/// Hashes two words with the seed: both halves of a product of 128 bits, folded into one.
inline std::uint64_t hashWords(std::uint64_t low, std::uint64_t high, const hash_seed& seed) {
  __extension__ using product = unsigned __int128;
  const product full = product{low ^ seed[0]} * (high ^ seed[1]);
  return static_cast<std::uint64_t>(full) ^ static_cast<std::uint64_t>(full >> 64);
}

/// Hashes the bytes of a text. Linear in its length.
inline std::uint64_t hashText(std::string_view text, const hash_seed& seed) {
  std::uint64_t hash = text.size();
  while (!text.empty()) {
    std::uint64_t words[2] = {0, 0};
    const std::size_t taken = text.size() < sizeof words ? text.size() : sizeof words;
    std::memcpy(words, text.data(), taken);
    text.remove_prefix(taken);
    hash = hashWords(hashWords(words[0], words[1], seed), hash, seed);
  }
  return hashWords(hash, seed[0], seed);
}

/// A hash with the seed of this process, for standard containers keyed by texts from tables.
struct text_hash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return hashText(text, processSeed()); }
};

}  // namespace qs_lib
