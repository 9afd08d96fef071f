#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/genetics/inbreeding.h"
#include "spx/support/export.h"

/// The genetic state of a population in a few numbers.
namespace spx {

/// The numbers of one set of animals; NaN where the set is empty.
struct genetic_diversity {
  std::size_t animals = 0;
  std::size_t founders = 0;          ///< that contribute to the set
  std::size_t phantom_founders = 0;  ///< missing parents that contribute to it
  double known_share = 0;            ///< the mean share of the genes that is from known founders
  double mean_inbreeding = 0;
  double highest_inbreeding = 0;
  double mean_kinship = 0;              ///< every animal with itself included
  double gene_diversity = 0;            ///< 1 - mean kinship: the heterozygosity expected, as a share of
                                        ///< that of the founders' source (Nei 1973; Lacy 1995)
  double observed_heterozygosity = 0;   ///< 1 - mean inbreeding
  double founder_diversity = 0;         ///< gene diversity of the founders, phantoms included
  double founder_genomes = 0;           ///< fg = 1 / (2 mean kinship) (Lacy 1995; Caballero & Toro 2000)
  double effective_founders = 0;        ///< fe, phantoms included
  double effective_known_founders = 0;  ///< fe over the known part
};

/// Computes them; linear.
SPX_EXPORT genetic_diversity diversityOf(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                         std::span<const animal_number> set);

/// Mean kinships over the known part of the genes (Ballou & Lacy 1995).
struct known_kinships {
  std::vector<double> of_animals;  ///< by node: sum_j k_ij / (u_i sum_j u_j), k counting genes of known
                                   ///< founders alone and u the known shares; NaN where u is 0
  double mean = 0;                 ///< sum_ij k_ij / (sum_j u_j)^2; NaN without known genes
};

/// Computes them: the inbreeding by known sources, then two passes. With a pedigree that is wholly
/// known they are the mean kinships.
SPX_EXPORT known_kinships knownKinships(const GeneticPedigree& pedigree, std::span<const animal_number> set,
                                        unsigned threads = 1);

/// Inbreeding over the known part, by node: F by known founders divided by the known shares of both
/// parents; 0 for founders, NaN where a parent has no known genes.
SPX_EXPORT std::vector<double> knownInbreeding(const GeneticPedigree& pedigree, unsigned threads = 1);

}  // namespace spx
