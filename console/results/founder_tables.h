#pragma once

#include <vector>

#include "spx/genetics/gene_drop.h"

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

/// Where the genes of the living come from, and which founder genes survive.
namespace spx::console {

/// The founders of the view's animals: their contribution to the living of the view, what a gene drop keeps of their
/// genes, and the share that would be best for gene diversity. Whether one is lost is judged by the whole
/// living population.
Table foundersTable(const GeneticBasis& basis, UNKNOWN_PARENTS unknown, const gene_drop_options& options);

/// What the runs of a gene drop gave: a row for gene diversity, founder genomes and different genes.
Table geneDropTable(const GeneticBasis& basis, const gene_drop_options& options);

/// Numbers of the founders of some animals, by what has become of their genes in the whole living population.
struct founder_states {
  std::size_t living = 0;       ///< alive themselves, with living descendants
  std::size_t represented = 0;  ///< dead or gone, with living descendants
  std::size_t potential = 0;    ///< alive, without living descendants
  std::size_t lost = 0;         ///< neither alive nor with living descendants
};

/// Counts founders by state; linear. With UNKNOWN_PARENTS::EXCLUDE founders of unknown origin do not count.
/// @param animals  living or dead; only founders among them and their ancestors count
founder_states founderStates(const GeneticBasis& basis, const std::vector<animal_number>& animals,
                             UNKNOWN_PARENTS unknown);

}  // namespace spx::console
