#pragma once

#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

/// Inbreeding coefficients, and the terms that products with the relationship matrix need.
namespace spx {

/// The terms of A = T D T' (Henderson 1976; Quaas 1976), by node.
struct relationship_terms {
  std::vector<double> inbreeding;  ///< F (Wright 1922); 0 where a parent is unknown
  std::vector<double> sampling;    ///< D, the Mendelian sampling variance; 0 for a group
};

/// Computes the inbreeding coefficients of all animals: F is the kinship of the parents.
///
/// A_sd of all offspring of a sire is read from one row of A, restricted to the ancestors of the sire
/// and his mates (Colleau 2002; Sargolzaei, Iwaisaki & Colleau 2005). Sires and dams with offspring are
/// counted first: where dams are fewer, a dam takes his place. The rows of eight sires of a level are
/// computed side by side: contemporaries share most ancestors, and the walk over these is paid once.
///
/// With a parent of several candidates c, A_ij is the average over them: F = sum p_c A_cd / 2, and
/// D = 1 - sum p_c p_c' A_cc' / 4 - (1 + F_d) / 4 (Henderson 1988; Famula 1992). For the node of
/// the group itself, 1 + F stands for sum p_c p_c' A_cc'.
///
/// @param threads  the maximum number of threads; the result is bitwise the same for any number
SPX_EXPORT relationship_terms inbreedingOf(const GeneticPedigree& pedigree, unsigned threads = 1);

/// The same for the genes of some sources alone: F is the probability that both genes of an animal
/// descend from one gene of these sources. With the shares of one founder it is the partial
/// inbreeding by that founder (Lacy, Alaks & Walsh 1996); summed over all founders it gives F.
/// @param shares  by node: the share of its genes that comes from the sources, see founderShares()
///                and knownShares()
SPX_EXPORT relationship_terms inbreedingBySources(const GeneticPedigree& pedigree, std::span<const double> shares,
                                                  unsigned threads = 1);

/// Ancestral inbreeding: the probability that a gene of the animal was homozygous by descent in an
/// ancestor at least once; fa = [fa_s + (1 - fa_s) F_s + fa_d + (1 - fa_d) F_d] / 2 (Ballou 1997).
/// Unknown parents add 0. By node; linear.
SPX_EXPORT std::vector<double> ancestralInbreeding(const GeneticPedigree& pedigree, std::span<const double> inbreeding);

}  // namespace spx
