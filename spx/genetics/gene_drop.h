#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "spx/genetics/founders.h"
#include "spx/genetics/genetic_pedigree.h"
#include "spx/support/export.h"

/// Gene dropping (MacCluer et al. 1986): every founder gets two genes of its own, every animal one random gene of each
/// parent, and the genes that reach a set of animals are counted. This is repeated many times.
namespace spx {

/// How geneDrop() works.
struct gene_drop_options {
  std::size_t runs = 10'000;
  std::uint64_t seed = 1;  ///< equal seeds give equal results, on any machine and with any threads
  unsigned threads = 1;    ///< the maximum number of threads
};

/// What was counted. A missing parent passes on one gene of two: it can keep half its genes at most.
struct gene_drop_result {
  std::size_t runs = 0;
  founder_contributions sources;          ///< the founders of the set, see contributionsTo()
  std::vector<double> retention;          ///< by founder: the share of its two genes still present
  std::vector<double> lost;               ///< by founder: how often neither gene was present
  std::vector<double> phantom_retention;  ///< by phantom: the share of its two genes still present
  std::vector<double> uniqueness;         ///< by animal of the set: the probability that a gene of it
                                          ///< is in no other animal of the set
  std::vector<double> diversity;          ///< by run: 1 - sum f^2 over the genes' frequencies f
  std::vector<std::uint32_t> genes;       ///< by run: the number of different genes present
};

/// Drops genes through the ancestors of a set; runs x ancestors steps. Without runs or with an
/// empty set the result is empty.
SPX_EXPORT gene_drop_result geneDrop(const GeneticPedigree& pedigree, std::span<const animal_number> set,
                                     const gene_drop_options& options = {});

/// Founder genomes that survive: the sum of the retentions, phantoms included.
SPX_EXPORT double genomesSurviving(const gene_drop_result& drop);

/// Founder genome equivalents by retention: 1 / sum (p^2 / r) (Lacy 1989). Not the same
/// number as 1 / (2 mean kinship), which is often given the same name.
SPX_EXPORT double founderGenomesByRetention(const gene_drop_result& drop);

/// Founder genome equivalents by gene frequencies: the mean over the runs of 1 / (2 sum f^2)
/// (Boichard, Maignel & Verrier 1997).
SPX_EXPORT double founderGenomesByFrequency(const gene_drop_result& drop);

/// The gene diversity that is left at best, if every founder's share were set to what it retains:
/// 1 - 1 / (2 sum r) (Lacy 1989; Ballou & Foose 1996).
SPX_EXPORT double potentialDiversity(const gene_drop_result& drop);

/// That share: r / sum r, by founder.
SPX_EXPORT std::vector<double> targetShares(const gene_drop_result& drop);

}  // namespace spx
