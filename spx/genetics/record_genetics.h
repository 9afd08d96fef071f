#pragma once

#include <vector>

#include "spx/core/animal_data.h"
#include "spx/genetics/studbook_pedigree.h"
#include "spx/support/export.h"

/// Functions that write genetic results into the records.
namespace spx {

/// Stores the inbreeding coefficient and the four generation numbers of all animals where the record
/// has none (NaN); values that the studbook gives are kept. Linear, after the inbreeding of all.
/// @param pedigree  built from the store
/// @param threads   see inbreedingOf()
SPX_EXPORT void fillGenetics(AnimalData& store, const StudbookPedigree& pedigree, unsigned threads = 1);

/// Marks the founder lineages that every animal descends from: clears all of them, then sets lineage n
/// for the founder n of the result and its descendants. Of more than 255 founders only the 255 with
/// the largest contributions to all animals are marked. Linear.
/// @return the records of these founders, in the order of their numbers
SPX_EXPORT std::vector<position> markFounderLineages(AnimalData& store, const StudbookPedigree& pedigree);

}  // namespace spx
