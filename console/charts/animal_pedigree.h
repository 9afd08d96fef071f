#pragma once

#include <cstddef>
#include <string>

#include "console/charts/pedigree_drawing.h"

namespace spx::console {

/// What the fill colour of a pedigree's symbols shows.
enum class PEDIGREE_FILL { INBREEDING, NOTHING };

/// Which relatives of an animal are drawn, in generations.
struct pedigree_extent {
  std::size_t ancestors = 5;
  std::size_t descendants = 0;
  PEDIGREE_FILL fill = PEDIGREE_FILL::INBREEDING;
};

/// The ancestors and descendants of an animal of the store, each once; only the parents count, not dates. Wild mates
/// without a record of their own are drawn; unknown parents are not. Throws Failure when there is no such animal, and
/// when a drawing of so many relatives would be unreadable. Linear in the records.
pedigree_drawing animalPedigree(const std::string& id, const pedigree_extent& extent);

}  // namespace spx::console
