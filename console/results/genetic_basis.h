#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "spx/genetics/inbreeding.h"
#include "spx/genetics/studbook_pedigree.h"

#include "console/output/table.h"

/// The basis of every genetic result: the pedigree of the loaded studbook, and the animals of the view.
namespace spx::console {

/// How genes of unknown origin enter a result.
enum class UNKNOWN_PARENTS : std::uint8_t {
  FOUNDER,  ///< each unknown parent is a founder of its own, unrelated to all others
  EXCLUDE   ///< the result is over the part of the genes that comes from known founders
};

/// The names of `--unknown`.
const char* getText(UNKNOWN_PARENTS treatment);

/// Whether animals of which no date is known count, among the living as long as no end is recorded: a pedigree without
/// dates has genetics too. They are ancestors in any case.
enum class UNDATED : std::uint8_t { LIVING, EXCLUDE };

/// The names of `--undated`.
const char* getText(UNDATED treatment);

/// The options of a GeneticBasis.
struct basis_options {
  /// Unknown and group parents become the average of the animals that parent tracing finds for them. The
  /// constructor then throws UsageError when the life history has no reproductive ages.
  bool trace_parents = false;
  UNDATED undated = UNDATED::LIVING;
  bool asks_living = true;  ///< otherwise the result is about named animals, and notes() says nothing about the living
};

/// The pedigree of the studbook in use with its inbreeding, and the animals that results are about. Ancestors are
/// always those of the whole studbook: the view decides who is counted, never who is an ancestor.
class GeneticBasis {
 public:
  /// Reads Animals and View. Throws Failure when animals are their own ancestors, with the cycle by IDs.
  explicit GeneticBasis(const basis_options& options = {});

  const StudbookPedigree& studbook() const { return studbook_; }
  const GeneticPedigree& pedigree() const { return studbook_.pedigree(); }
  const relationship_terms& terms() const { return terms_; }

  /// The animals of the view that were ever in its locations by its day, dead or alive.
  const std::vector<animal_number>& animals() const { return animals_; }
  /// Those that are alive and present on its day; see UNDATED.
  const std::vector<animal_number>& living() const { return living_; }
  /// The animals of the whole studbook by the view's day, dead or alive.
  const std::vector<animal_number>& wholeStudbook() const { return whole_studbook_; }
  /// The living animals of all locations, sexes and taxa on that day.
  const std::vector<animal_number>& wholePopulation() const { return whole_population_; }
  /// Whether the view includes all the living.
  bool isWholePopulation() const { return living_.size() == whole_population_.size(); }

  /// The animals of the view. Throws Failure when there is none, with what to do.
  const std::vector<animal_number>& needAnimals() const;
  /// The living animals of the view. Throws Failure, which says what to do, when there are none.
  const std::vector<animal_number>& needLiving() const;

  const master_data& record(animal_number animal) const;
  /// The ID in the studbook; for a parent without a record, the ID by which its offspring name it.
  const std::string& id(animal_number animal) const;

  /// The ID of the animal whose wild mate this is: "12" for "P12", which stands for its mate "WILD"; empty
  /// for other animals.
  std::string wildMateOf(animal_number animal) const;

  /// The number of an animal. Throws Failure for an ID that the studbook does not have, with the nearest one.
  animal_number number(const std::string& id) const;
  std::vector<animal_number> numbers(const std::vector<std::string>& ids) const;

  /// The animals in the natural order of their IDs: 2 before 10.
  std::vector<animal_number> sortedById(std::vector<animal_number> animals) const;

  /// The lines that say how undated animals, traced parents and unknown parents were treated.
  std::vector<std::string> notes(UNKNOWN_PARENTS treatment) const;
  /// The same without the line about unknown parents, for results that do not depend on them.
  std::vector<std::string> notes() const;
  /// How many of the living have no birth date.
  std::size_t withoutBirthDate() const;
  /// How many animals of the view have no date at all.
  std::size_t undated() const { return undated_; }

  /// How many threads a computation may use.
  static unsigned threads();

 private:
  void noteLiving(std::vector<std::string>& notes) const;

  StudbookPedigree studbook_;
  relationship_terms terms_;
  std::vector<animal_number> animals_;
  std::vector<animal_number> living_;
  std::vector<animal_number> whole_studbook_;
  std::vector<animal_number> whole_population_;
  std::unordered_map<animal_number, std::string> stand_ins_;  ///< the IDs of parents without a record
  basis_options options_;
  std::size_t undated_ = 0;
  std::size_t traced_ = 0;  ///< parents that stand for several candidates
};

/// Appends lines to the notes below a table.
void addNotes(Table& table, const std::vector<std::string>& notes);

/// The middle of the days on which the animal can have been born, as a day number; NaN when no date is known.
double birthDay(const master_data& animal);

/// The age in years on the view's day; NaN when the birth is not known.
double ageInYears(const master_data& animal);

/// The birth days and sexes of all animals of a pedigree, by number.
struct births_and_sexes {
  std::vector<double> births;
  std::vector<SEX> sexes;
};
births_and_sexes birthsAndSexes(const GeneticBasis& basis);

}  // namespace spx::console
