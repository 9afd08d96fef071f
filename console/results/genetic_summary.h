#pragma once

#include <string>
#include <vector>

#include "console/output/table.h"
#include "console/results/genetic_basis.h"

namespace spx::console {

/// One figure that describes the genetic state of a population.
struct genetic_fact {
  std::string name;   ///< for scripts
  std::string title;  ///< for people
  Cell value;
  COLUMN_KIND kind = COLUMN_KIND::REAL;
  int decimals = 4;
  std::string meaning;  ///< in one line
};

/// The animals that facts are about.
struct genetic_subject {
  const std::vector<animal_number>& animals;  ///< living and dead
  const std::vector<animal_number>& living;   ///< the living among them
};

/// The facts of some living animals; see docs/genetics.md.
std::vector<genetic_fact> geneticFacts(const GeneticBasis& basis, const genetic_subject& subject,
                                       UNKNOWN_PARENTS unknown);

/// The page of a yearly report for people: the view, next to it the whole living population unless the view is all
/// of it, and the meaning of each number.
Table geneticPage(const GeneticBasis& basis, UNKNOWN_PARENTS unknown);

/// The same for scripts: one record with the numbers of the view, and those of the whole living population in the
/// object `population`.
Table geneticRecord(const GeneticBasis& basis, UNKNOWN_PARENTS unknown);

}  // namespace spx::console
