#pragma once

#include <vector>

#include "spx/genetics/genetic_pedigree.h"

namespace spx::bench {

/// The inbreeding of all animals by the algorithm of Meuwissen & Luo (1992), as they published it: the
/// ancestors of one animal after the other in a list that is kept sorted, youngest first; full sibs that
/// follow each other share a result. The benchmark compares inbreedingOf() with it. Does not support groups.
std::vector<double> meuwissenLuo(const GeneticPedigree& pedigree);

/// The same with the ancestors in a heap.
std::vector<double> meuwissenLuoByHeap(const GeneticPedigree& pedigree);

}  // namespace spx::bench
