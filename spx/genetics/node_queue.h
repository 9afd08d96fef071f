#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"

namespace spx {

/// Nodes that wait for a visit, to be visited in the order of their numbers.
class NodeQueue {
 public:
  explicit NodeQueue(std::size_t nodes) : words_(nodes / BITS + 1), lowest_(words_.size()) {}

  void add(animal_number node) {
    const std::size_t word = node / BITS;
    words_[word] |= std::uint64_t{1} << (node % BITS);
    lowest_ = std::min(lowest_, word);
    highest_ = std::max(highest_, word);
  }

  /// Takes the nodes from the lowest to the highest; visit(node) may add higher ones.
  template <class Visit>
  void drainUp(Visit visit) {
    for (std::size_t word = lowest_; word <= highest_ && word < words_.size(); ++word) {
      while (words_[word] != 0) {
        const auto bit = static_cast<animal_number>(std::countr_zero(words_[word]));
        words_[word] &= words_[word] - 1;
        visit(static_cast<animal_number>(word * BITS) + bit);
      }
    }
    reset();
  }

  /// Takes the nodes from the highest to the lowest; visit(node) may add lower ones.
  template <class Visit>
  void drainDown(Visit visit) {
    for (std::size_t word = highest_ + 1; word-- > 0 && word >= lowest_;) {
      while (words_[word] != 0) {
        const auto bit = static_cast<animal_number>(BITS - 1 - std::countl_zero(words_[word]));
        words_[word] ^= std::uint64_t{1} << bit;
        visit(static_cast<animal_number>(word * BITS) + bit);
      }
    }
    reset();
  }

 private:
  static constexpr int BITS = 64;
  void reset() {
    lowest_ = words_.size();
    highest_ = 0;
  }

  std::vector<std::uint64_t> words_;
  std::size_t lowest_;
  std::size_t highest_ = 0;
};

}  // namespace spx
