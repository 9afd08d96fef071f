#pragma once

#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/genetics/inbreeding.h"
#include "spx/support/export.h"

namespace spx {

/// A common ancestor of two animals and its part in their kinship.
struct common_ancestor {
  animal_number animal;
  double kinship;  ///< what it adds itself, without the parts of its own ancestors
};

/// The animals that both animals descend from, or that one of them is and the other descends from;
/// the largest part first. The parts add up to the kinship: k = sum_j T_aj T_bj D_j / 2, the terms of
/// A = T D T' (Henderson 1976). The common ancestors of an animal's parents explain its inbreeding.
SPX_EXPORT std::vector<common_ancestor> commonAncestors(const GeneticPedigree& pedigree,
                                                        const relationship_terms& terms, animal_number a,
                                                        animal_number b);

}  // namespace spx
