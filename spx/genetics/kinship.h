#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"
#include "spx/genetics/inbreeding.h"
#include "spx/support/export.h"

/// Kinship (Malécot 1948): the probability that a gene drawn from one animal and a gene drawn from
/// another, or from the same animal again, are identical by descent; half the additive relationship.
namespace spx {

/// A x for the relationship matrix A of the whole pedigree: one pass up, one down (Colleau 2002).
/// Linear; A is never formed.
/// @param x  by node
SPX_EXPORT std::vector<double> relationshipProduct(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                                   std::vector<double> x);

/// The kinship of two animals; of one with itself (1 + F) / 2. As many steps as they have ancestors,
/// after reserving memory for the whole pedigree.
SPX_EXPORT double kinship(const GeneticPedigree& pedigree, const relationship_terms& terms, animal_number a,
                          animal_number b);

/// The kinship of one animal with every other, by node. Linear.
SPX_EXPORT std::vector<double> kinshipWith(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                           animal_number animal);

/// The mean kinship of every animal of the pedigree with a set, itself included where it belongs to
/// it: MK_i = sum_j k_ij / N (Ballou & Lacy 1995). By node; linear. NaN for an empty set.
SPX_EXPORT std::vector<double> meanKinships(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                            std::span<const animal_number> set);

/// The mean kinship between two sets, such as two zoos; of a set with itself its mean kinship, every
/// animal with itself included. Linear. NaN when a set is empty.
SPX_EXPORT double meanKinshipBetween(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                     std::span<const animal_number> a, std::span<const animal_number> b);

/// The kinship of every animal of `rows` with every animal of `columns`, row after row. One walk over
/// the ancestors of all for eight rows.
SPX_EXPORT std::vector<double> kinshipBlock(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                            std::span<const animal_number> rows, std::span<const animal_number> columns,
                                            unsigned threads = 1);

/// The kinships of a set of animals: a lower triangle.
class SPX_EXPORT KinshipMatrix {
 public:
  /// The memory that a matrix of that many animals takes, in bytes.
  static double bytesFor(std::size_t animals);

  /// Computes the matrix. @return false, with nothing computed, when there is not enough memory for it
  bool compute(const GeneticPedigree& pedigree, const relationship_terms& terms, std::span<const animal_number> animals,
               unsigned threads = 1);

  /// The number of animals.
  std::size_t size() const { return size_; }

  /// The kinship of two animals by their places in the set.
  double at(std::size_t a, std::size_t b) const {
    return a < b ? values_[b * (b + 1) / 2 + a] : values_[a * (a + 1) / 2 + b];
  }

 private:
  std::size_t size_ = 0;
  std::vector<double> values_;
};

}  // namespace spx
