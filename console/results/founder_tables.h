#pragma once

#include <vector>

#include "spx/genetics/gene_drop.h"

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

/// Where the genes of the living come from, and which of them are still there.
namespace spx::console {

/// The founders: their contribution to the living of the view, what a gene drop keeps of their genes, and the share
/// that they ought to have.
Table foundersTable(const GeneticBasis& basis, UNKNOWN_PARENTS unknown, const gene_drop_options& options);

/// What the runs of a gene drop gave: a row for gene diversity, founder genomes and different genes.
Table geneDropTable(const GeneticBasis& basis, const gene_drop_options& options);

/// How many founders of the studbook some living animals have, might have, and have lost.
struct founder_states {
  std::size_t living = 0;       ///< alive themselves, with living descendants
  std::size_t represented = 0;  ///< dead or elsewhere, with living descendants
  std::size_t potential = 0;    ///< alive, without living descendants
  std::size_t lost = 0;         ///< neither alive nor with living descendants
};
founder_states founderStates(const GeneticBasis& basis, const std::vector<animal_number>& living);

}  // namespace spx::console
