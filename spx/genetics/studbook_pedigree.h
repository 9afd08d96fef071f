#pragma once

#include <span>
#include <string>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/multi_parent.h"
#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

namespace spx {

/// The animals that one parent of a record may be, in place of what the record says.
struct parent_candidates {
  position offspring = 0;
  bool is_sire = true;               ///< else the dam
  std::vector<position> candidates;  ///< each as likely as the others
};

/// What StudbookPedigree::build() can be given besides the studbook.
struct parent_choices {
  std::span<const multi_parent> groups;           ///< the candidates of group parents, such as parent_list
  std::span<const parent_candidates> candidates;  ///< of single animals' parents
};

/// The pedigree of a studbook as numbers.
///
/// An animal is a record, also a pseudo founder with a record of its own ("P12", the wild mate of 12,
/// or a parent without a record): a founder that its offspring share. "WILD" is a wild source of its
/// own for every offspring; "UNK", "UNKM", "UNKF" and groups whose candidates are not listed are
/// unknown ones. A founder that is recorded as captive-born is of unknown origin.
///
/// Numbers follow the parents and then the studbook IDs, so that no result depends on the order of the
/// records.
class SPX_EXPORT StudbookPedigree {
 public:
  /// Builds it from the store's records and its pedigree list, which does not change; without a list
  /// (see AnimalData::populationPedigree) there are no animals. n log n if the list is not in the order
  /// in which it was made, else linear.
  /// @return false when the parents form a cycle: see cycle(); there are no animals then
  bool build(const AnimalData& store, const parent_choices& choices = {});

  const GeneticPedigree& pedigree() const { return pedigree_; }

  /// The number of a record; UNKNOWN_SOURCE for "WILD", "UNK", "UNKM", "UNKF", "MULT", groups and records
  /// that were added later.
  animal_number number(position record) const {
    return record < row_of_.size() && row_of_[record] != UNKNOWN_SOURCE ? pedigree_.number(row_of_[record])
                                                                        : UNKNOWN_SOURCE;
  }

  /// The record of an animal. The number may not be that of a group.
  position record(animal_number animal) const { return records_[pedigree_.row(animal)]; }

  /// The studbook IDs of one cycle: each animal is followed by its parent, the last one's parent is the
  /// first. Empty when there is none.
  const std::vector<std::string>& cycle() const { return cycle_; }

 private:
  class Reader;
  GeneticPedigree pedigree_;
  std::vector<position> records_;      ///< by row
  std::vector<animal_number> row_of_;  ///< by record
  std::vector<std::string> cycle_;
};

}  // namespace spx
