#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"

/// Products with the relationship matrix, restricted to a few animals and their ancestors.
namespace spx {

/// Some animals and all their ancestors, packed without gaps in the order of their numbers. Meant
/// to be packed many times: the memory is reused.
class PackedAncestors {
 public:
  using slot_number = std::uint32_t;
  struct parent_slots {
    slot_number sire;
    slot_number dam;
  };
  struct shared_slot {
    slot_number slot;
    double share;
  };

  explicit PackedAncestors(const GeneticPedigree& pedigree);

  /// Requests an animal for the next pack().
  void add(animal_number animal);

  /// Packs the requested animals and their ancestors; the previous ones are dropped. Slot 0 stands
  /// for every parent that is not a node.
  void pack();

  /// The number of slots, slot 0 included.
  slot_number size() const { return static_cast<slot_number>(animals_.size()); }
  /// The slot of a packed animal; meaningless for others.
  slot_number slot(animal_number animal) const { return slots_[animal]; }
  animal_number animal(slot_number slot) const { return animals_[slot]; }

  const parent_slots* parents() const { return parents_.data(); }
  static bool isGroup(parent_slots parents) { return parents.sire >= FIRST_GROUP; }
  std::span<const shared_slot> candidates(parent_slots group) const {
    const group_range range = groups_[group.sire - FIRST_GROUP];
    return {shared_slots_.data() + range.begin, range.end - range.begin};
  }

 private:
  struct group_range {
    std::size_t begin;
    std::size_t end;
  };
  void closeUpwards();
  void take(animal_number animal);

  const GeneticPedigree& pedigree_;
  std::vector<std::uint64_t> wanted_;  ///< a bit for each node
  std::size_t highest_word_ = 0;
  std::vector<slot_number> slots_;  ///< by node
  std::vector<animal_number> animals_;
  std::vector<parent_slots> parents_;
  std::vector<group_range> groups_;
  std::vector<shared_slot> shared_slots_;
};

/// Rows of the relationship matrix, eight at a time: A x = T (D (T' x)), Colleau 2002. The lanes share
/// the walk over the pedigree, which costs more than the arithmetic.
class RelationshipSweep {
 public:
  static constexpr std::size_t LANES = 8;
  using lanes = std::array<double, LANES>;

  /// Starts with x = 0 in every lane.
  void start(const PackedAncestors& packed) {
    values_.assign(packed.size(), lanes{});
    top_ = 0;
  }

  void add(PackedAncestors::slot_number slot, std::size_t lane, double x) {
    values_[slot][lane] += x;
    if (slot > top_) top_ = slot;
  }

  /// Replaces x by A x.
  /// @param sampling  by node: the Mendelian sampling variances D, wherever x has descendants
  void spread(const PackedAncestors& packed, const std::vector<double>& sampling) {
    passUp(packed);
    values_[0] = lanes{};
    passDown(packed, sampling);
  }

  const lanes& at(PackedAncestors::slot_number slot) const { return values_[slot]; }

 private:
  using slot_number = PackedAncestors::slot_number;

  void passUp(const PackedAncestors& packed) {
    const PackedAncestors::parent_slots* parents = packed.parents();
    for (slot_number slot = top_; slot > 0; --slot) {
      if (PackedAncestors::isGroup(parents[slot])) [[unlikely]] {
        for (const auto& [candidate, share] : packed.candidates(parents[slot])) {
          addTo(candidate, slot, share);
        }
        continue;
      }
      addTo(parents[slot].sire, slot, 0.5);
      addTo(parents[slot].dam, slot, 0.5);
    }
  }

  void addTo(slot_number parent, slot_number child, double share) {
    lanes& to = values_[parent];
    const lanes& from = values_[child];
    for (std::size_t lane = 0; lane < LANES; ++lane) to[lane] += share * from[lane];
  }

  void passDown(const PackedAncestors& packed, const std::vector<double>& sampling) {
    const PackedAncestors::parent_slots* parents = packed.parents();
    for (slot_number slot = 1; slot < packed.size(); ++slot) {
      lanes& value = values_[slot];
      if (PackedAncestors::isGroup(parents[slot])) [[unlikely]] {
        value = lanes{};
        for (const auto& [candidate, share] : packed.candidates(parents[slot])) {
          addTo(slot, candidate, share);
        }
        continue;
      }
      const lanes& sire = values_[parents[slot].sire];
      const lanes& dam = values_[parents[slot].dam];
      const double own = sampling[packed.animal(slot)];
      for (std::size_t lane = 0; lane < LANES; ++lane) {
        value[lane] = own * value[lane] + 0.5 * (sire[lane] + dam[lane]);
      }
    }
  }

  std::vector<lanes> values_;
  slot_number top_ = 0;
};

}  // namespace spx
