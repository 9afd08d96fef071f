#pragma once

#include <cstddef>
#include <string>

#include "console/charts/pedigree_drawing.h"

namespace spx::console {

/// What the symbols of a pedigree are filled by.
enum class PEDIGREE_FILL { INBREEDING, NOTHING };

/// Which relatives of an animal are drawn, in generations.
struct pedigree_extent {
  std::size_t ancestors = 5;
  std::size_t descendants = 0;
  PEDIGREE_FILL fill = PEDIGREE_FILL::INBREEDING;
};

/// The ancestors and descendants of an animal of the store, each once, found by the parents alone. Wild mates that the
/// records only imply are drawn; unknown parents are not.
/// Throws Failure when there is no such animal, and when there are more relatives than can be read.
/// Linear in the records.
pedigree_drawing animalPedigree(const std::string& id, const pedigree_extent& extent);

}  // namespace spx::console
