#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "spx/core/enumerations.h"
#include "spx/core/master_data.h"

namespace spx::console {

/// An animal of a pedigree for other programs.
struct pedigree_member {
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  std::string id;
  std::size_t sire = NONE;  ///< its place in the pedigree, which comes before the animal's
  std::size_t dam = NONE;
  SEX sex = SEX::UNKNOWN;
  const master_data* record = nullptr;  ///< null for an invented parent
};

/// The animals whose `print` flag is set and all their ancestors, parents before offspring and otherwise in the order
/// of the records. A parent is known when it has a record of its own. Of several animals with
/// one ID the first is the parent, and the others are "ID#2" and so on. Throws Failure when an animal
/// is its own ancestor.
std::vector<pedigree_member> printedPedigree();

/// Invents the missing parent of each animal that has only one: a founder "sire_of_ID" or "dam_of_ID".
std::vector<pedigree_member> withBothParents(const std::vector<pedigree_member>& pedigree);

/// Sets the sex of unsexed parents by their role. Throws Failure for a female sire, a male dam, and
/// an animal that is both a sire and a dam.
void settleParentSexes(std::vector<pedigree_member>& pedigree);

}  // namespace spx::console
