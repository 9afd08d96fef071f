#include "spx/genetics/kinship.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

#include "spx/genetics/ancestor_sweep.h"
#include "spx/genetics/parallel.h"

namespace spx {
namespace {

constexpr std::size_t LANES = RelationshipSweep::LANES;

std::vector<double> indicator(const GeneticPedigree& pedigree, std::span<const animal_number> set, double value) {
  std::vector<double> x(pedigree.size());
  for (const animal_number animal : set) x[animal] += value;
  return x;
}

/// Computes rows of the relationship matrix at some columns and hands each block of rows on:
/// use(first_row, rows, sweep, packed).
template <class Use>
void forEachBlock(const GeneticPedigree& pedigree, const relationship_terms& terms, std::span<const animal_number> rows,
                  std::span<const animal_number> columns, unsigned threads, const Use& use) {
  PackedAncestors packed(pedigree);
  for (const animal_number animal : rows) packed.add(animal);
  for (const animal_number animal : columns) packed.add(animal);
  packed.pack();
  std::vector<RelationshipSweep> sweeps(std::max(1U, threads));
  forEachTask((rows.size() + LANES - 1) / LANES, sweeps.size(), [&](std::size_t worker, std::size_t block) {
    const std::size_t first = block * LANES;
    const std::size_t count = std::min(LANES, rows.size() - first);
    RelationshipSweep& sweep = sweeps[worker];
    sweep.start(packed);
    for (std::size_t lane = 0; lane < count; ++lane) {
      sweep.add(packed.slot(rows[first + lane]), lane, 0.5);
    }
    sweep.spread(packed, terms.sampling);
    use(first, count, sweep, packed);
  });
}

}  // namespace

std::vector<double> relationshipProduct(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                        std::vector<double> x) {
  const auto nodes = static_cast<animal_number>(pedigree.size());
  for (animal_number node = nodes; node-- > 0;) {
    const double value = x[node];
    if (value == 0) continue;
    pedigree.forEachParent(node, [&](animal_number parent, double share) { x[parent] += share * value; });
  }
  for (animal_number node = 0; node < nodes; ++node) {
    double value = terms.sampling[node] * x[node];
    pedigree.forEachParent(node, [&](animal_number parent, double share) { value += share * x[parent]; });
    x[node] = value;
  }
  return x;
}

double kinship(const GeneticPedigree& pedigree, const relationship_terms& terms, animal_number a, animal_number b) {
  return kinshipBlock(pedigree, terms, std::span(&a, 1), std::span(&b, 1)).front();
}

std::vector<double> kinshipWith(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                animal_number animal) {
  return relationshipProduct(pedigree, terms, indicator(pedigree, std::span(&animal, 1), 0.5));
}

std::vector<double> meanKinships(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                 std::span<const animal_number> set) {
  if (set.empty()) {
    return std::vector<double>(pedigree.size(), std::numeric_limits<double>::quiet_NaN());
  }
  const double each = 0.5 / static_cast<double>(set.size());
  return relationshipProduct(pedigree, terms, indicator(pedigree, set, each));
}

double meanKinshipBetween(const GeneticPedigree& pedigree, const relationship_terms& terms,
                          std::span<const animal_number> a, std::span<const animal_number> b) {
  const std::vector<double> with_b = meanKinships(pedigree, terms, b);
  double sum = 0;
  for (const animal_number animal : a) sum += with_b[animal];
  return sum / static_cast<double>(a.size());
}

std::vector<double> kinshipBlock(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                 std::span<const animal_number> rows, std::span<const animal_number> columns,
                                 unsigned threads) {
  std::vector<double> block(rows.size() * columns.size());
  forEachBlock(pedigree, terms, rows, columns, threads,
               [&](std::size_t first, std::size_t count, const auto& sweep, const auto& packed) {
                 for (std::size_t column = 0; column < columns.size(); ++column) {
                   const auto& values = sweep.at(packed.slot(columns[column]));
                   for (std::size_t lane = 0; lane < count; ++lane) {
                     block[(first + lane) * columns.size() + column] = values[lane];
                   }
                 }
               });
  return block;
}

double KinshipMatrix::bytesFor(std::size_t animals) {
  const auto count = static_cast<double>(animals);
  return count * (count + 1) / 2 * sizeof(double);
}

bool KinshipMatrix::compute(const GeneticPedigree& pedigree, const relationship_terms& terms,
                            std::span<const animal_number> animals, unsigned threads) {
  const std::size_t count = animals.size();
  std::vector<double> values;
  try {
    values.resize(count * (count + 1) / 2);
  } catch (const std::bad_alloc&) {
    return false;
  } catch (const std::length_error&) {
    return false;
  }
  forEachBlock(pedigree, terms, animals, {}, threads,
               [&](std::size_t first, std::size_t rows, const auto& sweep, const auto& packed) {
                 for (std::size_t lane = 0; lane < rows; ++lane) {
                   const std::size_t row = first + lane;
                   for (std::size_t column = 0; column <= row; ++column) {
                     values[row * (row + 1) / 2 + column] = sweep.at(packed.slot(animals[column]))[lane];
                   }
                 }
               });
  values_ = std::move(values);
  size_ = count;
  return true;
}

}  // namespace spx
