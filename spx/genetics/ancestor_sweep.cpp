#include "spx/genetics/ancestor_sweep.h"

#include <bit>

namespace spx {
namespace {

constexpr animal_number BITS = 64;

std::uint64_t bitOf(animal_number animal) {
  return std::uint64_t{1} << (animal % BITS);
}

}  // namespace

PackedAncestors::PackedAncestors(const GeneticPedigree& pedigree)
    : pedigree_(pedigree), wanted_(pedigree.size() / BITS + 1), slots_(pedigree.size()) {}

void PackedAncestors::add(animal_number animal) {
  const std::size_t word = animal / BITS;
  wanted_[word] |= bitOf(animal);
  if (word > highest_word_) highest_word_ = word;
}

void PackedAncestors::pack() {
  closeUpwards();
  animals_.assign(1, UNKNOWN_SOURCE);
  parents_.assign(1, {0, 0});
  groups_.clear();
  shared_slots_.clear();
  for (std::size_t word = 0; word <= highest_word_; ++word) {
    for (std::uint64_t rest = wanted_[word]; rest != 0; rest &= rest - 1) {
      take(static_cast<animal_number>(word * BITS) + static_cast<animal_number>(std::countr_zero(rest)));
    }
    wanted_[word] = 0;
  }
  highest_word_ = 0;
}

// Parents have lower numbers than their offspring. Their bits may lie in the word being scanned, so
// it is read again after each animal.
void PackedAncestors::closeUpwards() {
  for (std::size_t word = highest_word_ + 1; word-- > 0;) {
    std::uint64_t rest = wanted_[word];
    while (rest != 0) {
      const auto bit = static_cast<animal_number>(BITS - 1) - static_cast<animal_number>(std::countl_zero(rest));
      const auto animal = static_cast<animal_number>(word * BITS) + bit;
      pedigree_.forEachParent(animal,
                              [this](animal_number parent, double) { wanted_[parent / BITS] |= bitOf(parent); });
      rest = wanted_[word] & (bitOf(bit) - 1);
    }
  }
}

void PackedAncestors::take(animal_number animal) {
  const auto slotOf = [this](animal_number parent) { return pedigree_.isNode(parent) ? slots_[parent] : 0; };
  slots_[animal] = size();
  animals_.push_back(animal);
  if (!pedigree_.isGroup(animal)) {
    parents_.push_back({slotOf(pedigree_.sire(animal)), slotOf(pedigree_.dam(animal))});
    return;
  }
  parents_.push_back({FIRST_GROUP + static_cast<slot_number>(groups_.size()), 0});
  const std::size_t begin = shared_slots_.size();
  for (const auto& [candidate, share] : pedigree_.candidates(animal)) {
    shared_slots_.push_back({slots_[candidate], share});
  }
  groups_.push_back({begin, shared_slots_.size()});
}

}  // namespace spx
