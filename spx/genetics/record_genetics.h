#pragma once

#include <vector>

#include "spx/core/animal_data.h"
#include "spx/genetics/studbook_pedigree.h"
#include "spx/support/export.h"

/// What genetics writes into the records.
namespace spx {

/// Stores the inbreeding coefficient and the four generation numbers of all animals where the record
/// has none (NaN): what a studbook gives stays. Linear, after the inbreeding of all.
/// @param pedigree  built from the store
/// @param threads   see inbreedingOf()
SPX_EXPORT void fillGenetics(AnimalData& store, const StudbookPedigree& pedigree, unsigned threads = 1);

/// Marks the founder lineages that every animal descends from: clears all of them, then sets lineage n
/// for the founder n of the result and its descendants. Beyond 255 founders the 255 with the largest
/// contribution to all animals are told apart. Linear.
/// @return the records of these founders, in the order of their numbers
SPX_EXPORT std::vector<position> markFounderLineages(AnimalData& store, const StudbookPedigree& pedigree);

}  // namespace spx
