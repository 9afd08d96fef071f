#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "spx/support/export.h"

/// A pedigree as numbers: what every genetic statistic is computed from.
namespace spx {

/// The number of an animal in a GeneticPedigree, or the row of an animal in pedigree_rows.
using animal_number = std::uint32_t;

/// @{
/// A parent that is not an animal of the pedigree. Every offspring has an unrelated source of its own,
/// which is not inbred: two offspring of unknown parents share nothing.
inline constexpr animal_number UNKNOWN_SOURCE = std::numeric_limits<animal_number>::max();
inline constexpr animal_number WILD_SOURCE = UNKNOWN_SOURCE - 1;  ///< caught in the wild: a known founder
/// @}

/// A parent FIRST_GROUP + k is the group k: one of several possible parents.
inline constexpr animal_number FIRST_GROUP = animal_number{1} << 31U;

/// The row of a node that is not an animal.
inline constexpr std::size_t NO_ROW = std::numeric_limits<std::size_t>::max();

/// An animal that a group parent may stand for.
struct possible_parent {
  animal_number animal;  ///< a row in pedigree_rows, a number in a GeneticPedigree
  double share;          ///< the probability that it is the parent
};

/// The animals and their parents, in any order.
struct pedigree_rows {
  std::vector<animal_number> sires;                  ///< by row: the sire's row, a source, or FIRST_GROUP + k
  std::vector<animal_number> dams;                   ///< likewise
  std::vector<std::vector<possible_parent>> groups;  ///< what is missing from 1 is an unknown source
  std::vector<bool> of_unknown_origin;               ///< founders that are not known founders; may be empty
};

/// A pedigree whose animals are numbered from 0 with parents before offspring.
///
/// The order follows from the parents alone: first all animals without parents (level 0), then those
/// whose parents have lower levels, and in a level the order of the rows. Dates play no part.
///
/// A group parent is a node with a number of its own, which stands for the average of its candidates.
/// It has no row, and must not be in the sets of animals that are passed to statistics.
///
/// The values are immutable once assigned, and safe to read from several threads.
class SPX_EXPORT GeneticPedigree {
 public:
  GeneticPedigree() = default;

  /// Numbers the animals; linear. A parent or a candidate that is not a row counts as an unknown
  /// source, and shares of a group that exceed 1 are scaled down to it.
  /// @return empty on success; else the rows of one cycle, each animal followed by its parent, the
  ///         last one's parent being the first, and the pedigree is left empty
  std::vector<std::size_t> assign(const pedigree_rows& rows);

  /// The number of nodes: animals and groups.
  std::size_t size() const { return sires_.size(); }
  /// The number of animals.
  std::size_t rows() const { return numbers_.size(); }

  /// @{
  /// The sire or dam: a node, or a value of size() and above, a source.
  animal_number sire(animal_number animal) const { return sires_[animal]; }
  animal_number dam(animal_number animal) const { return dams_[animal]; }
  /// @}
  bool isNode(animal_number parent) const { return parent < sires_.size(); }

  /// Whether neither parent is an animal or a group; false for a group.
  bool isFounder(animal_number animal) const {
    return !isNode(sires_[animal]) && !isNode(dams_[animal]) && !isGroup(animal);
  }
  /// Whether a founder's own origin is known; see pedigree_rows::of_unknown_origin.
  bool isOfKnownOrigin(animal_number founder) const {
    return of_unknown_origin_.empty() || !of_unknown_origin_[founder];
  }

  bool isGroup(animal_number node) const { return isGroupMark(sires_[node]); }
  /// The candidates of a group and their shares, which may add up to less than 1.
  std::span<const possible_parent> candidates(animal_number group) const {
    return groups_[sires_[group] - FIRST_GROUP];
  }

  /// Calls visit(parent, share) for the parents that are nodes, with the share of the animal's genes
  /// that is theirs: 1/2, or a candidate's share for a group.
  template <class Visit>
  void forEachParent(animal_number animal, Visit visit) const {
    const animal_number sire = sires_[animal];
    const animal_number dam = dams_[animal];
    if (isGroupMark(sire)) [[unlikely]] {
      for (const auto& [parent, share] : groups_[sire - FIRST_GROUP]) visit(parent, share);
      return;
    }
    if (isNode(sire)) visit(sire, 0.5);
    if (isNode(dam)) visit(dam, 0.5);
  }

  /// The number of an animal by its row.
  animal_number number(std::size_t row) const { return numbers_[row]; }
  /// The row of an animal by its number; NO_ROW for a group.
  std::size_t row(animal_number animal) const { return rows_[animal]; }

  /// Where each level begins, and the end of the last: nodes of a level are not related as ancestor
  /// and descendant. At least two entries, unless the pedigree is empty.
  const std::vector<animal_number>& levels() const { return level_begins_; }

  /// The animals and all their ancestors as a pedigree of its own, whose rows are the numbers in this
  /// one. Linear in this pedigree.
  GeneticPedigree ancestorsOf(std::span<const animal_number> animals) const;

 private:
  bool isGroupMark(animal_number sire) const { return sire >= FIRST_GROUP && sire < FIRST_GROUP + groups_.size(); }
  void numberByLevel(const pedigree_rows& rows, const std::vector<std::uint32_t>& levels);
  void place(const pedigree_rows& rows, std::size_t node, const std::vector<animal_number>& numbers);

  std::vector<animal_number> sires_;  ///< FIRST_GROUP + k for the group k
  std::vector<animal_number> dams_;
  std::vector<std::vector<possible_parent>> groups_;
  std::vector<std::size_t> rows_;
  std::vector<animal_number> numbers_;
  std::vector<animal_number> level_begins_;
  std::vector<bool> of_unknown_origin_;
};

}  // namespace spx
