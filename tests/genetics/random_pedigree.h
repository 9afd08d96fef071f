#pragma once

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "spx/genetics/genetic_pedigree.h"

/// Pedigrees for the tests, and the tabular method (Emik & Terrill 1949): slow, and independent of the
/// code that it checks.
namespace spx::genetics_test {

using matrix = std::vector<std::vector<double>>;

/// The options of a random pedigree.
struct pedigree_kind {
  std::size_t animals;
  double unknown = 0.1;  ///< the probability that a parent is missing
  double group = 0.05;   ///< that it is one of several
  bool two_sexes = false;
};

/// Parents before offspring.
inline pedigree_rows randomRows(const pedigree_kind& kind, std::uint32_t seed) {
  std::mt19937 engine(seed);
  std::uniform_real_distribution<double> uniform(0, 1);
  pedigree_rows rows;
  const auto draw = [&](animal_number below, animal_number parity) -> animal_number {
    const double lot = uniform(engine);
    if (below < 3 || lot < kind.unknown) return lot < kind.unknown / 3 ? WILD_SOURCE : UNKNOWN_SOURCE;
    const auto older = [&] {
      // Mostly recent animals, so that the pedigree gets deep.
      const animal_number window = std::min<animal_number>(below, 40);
      animal_number parent = below - 1 - static_cast<animal_number>(engine() % window);
      if (kind.two_sexes && parent % 2 != parity) parent = parent == 0 ? 1 : parent - 1;
      return parent;
    };
    if (lot >= kind.unknown + kind.group) return older();
    rows.groups.push_back({{older(), 0.5}, {older(), 0.3}});
    if (lot < kind.unknown + kind.group / 2) rows.groups.back().push_back({older(), 0.2});
    return FIRST_GROUP + static_cast<animal_number>(rows.groups.size() - 1);
  };
  for (animal_number animal = 0; animal < kind.animals; ++animal) {
    rows.sires.push_back(draw(animal, 0));
    rows.dams.push_back(draw(animal, 1));
  }
  return rows;
}

/// The same animals in another order. @param places  receives the new row of each old one
inline pedigree_rows shuffled(const pedigree_rows& rows, std::uint32_t seed, std::vector<animal_number>& places) {
  std::mt19937 engine(seed);
  const std::size_t animals = rows.sires.size();
  places.resize(animals);
  std::iota(places.begin(), places.end(), animal_number{0});
  std::shuffle(places.begin(), places.end(), engine);
  const auto moved = [&](animal_number parent) { return parent < animals ? places[parent] : parent; };
  pedigree_rows mixed = rows;
  for (std::size_t row = 0; row < animals; ++row) {
    mixed.sires[places[row]] = moved(rows.sires[row]);
    mixed.dams[places[row]] = moved(rows.dams[row]);
  }
  for (auto& group : mixed.groups) {
    for (possible_parent& candidate : group) candidate.animal = moved(candidate.animal);
  }
  return mixed;
}

/// The rows that a parent can stand for, with their probabilities.
inline std::vector<possible_parent> candidatesOf(const pedigree_rows& rows, animal_number parent) {
  if (parent < rows.sires.size()) return {{parent, 1.0}};
  if (parent >= FIRST_GROUP && parent - FIRST_GROUP < rows.groups.size()) {
    return rows.groups[parent - FIRST_GROUP];
  }
  return {};
}

/// The shares of an animal's genes that come from other rows.
inline std::vector<possible_parent> partsOf(const pedigree_rows& rows, std::size_t row) {
  std::vector<possible_parent> parts;
  for (const animal_number parent : {rows.sires[row], rows.dams[row]}) {
    for (const auto& [candidate, share] : candidatesOf(rows, parent)) {
      parts.push_back({candidate, share / 2});
    }
  }
  return parts;
}

/// The relationship matrix of rows that have parents before offspring.
/// @param shares  of the genes of each row that count; empty for all
inline matrix tabular(const pedigree_rows& rows, const std::vector<double>& shares = {}) {
  const std::size_t animals = rows.sires.size();
  matrix a(animals, std::vector<double>(animals));
  for (std::size_t i = 0; i < animals; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      for (const auto& [parent, share] : partsOf(rows, i)) a[i][j] += share * a[parent][j];
      a[j][i] = a[i][j];
    }
    a[i][i] = shares.empty() ? 1 : shares[i];
    for (const auto& [sire, p] : candidatesOf(rows, rows.sires[i])) {
      for (const auto& [dam, q] : candidatesOf(rows, rows.dams[i])) {
        a[i][i] += p * q * a[sire][dam] / 2;
      }
    }
  }
  return a;
}

/// The numbers of rows 0 to count - 1.
inline std::vector<animal_number> numbersOf(const GeneticPedigree& pedigree, std::size_t count) {
  std::vector<animal_number> numbers;
  for (std::size_t row = 0; row < count; ++row) numbers.push_back(pedigree.number(row));
  return numbers;
}

}  // namespace spx::genetics_test
