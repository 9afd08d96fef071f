#include "console/results/genetic_summary.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "spx/genetics/diversity.h"
#include "spx/genetics/effective_ancestors.h"
#include "spx/genetics/effective_size.h"
#include "spx/genetics/founders.h"
#include "spx/genetics/generations.h"

#include "console/results/founder_tables.h"

namespace spx::console {
namespace {

constexpr std::size_t COMPLETENESS_GENERATIONS = 5;

double meanOf(const std::vector<animal_number>& animals, const std::vector<double>& values) {
  double sum = 0;
  for (const animal_number animal : animals) sum += values[animal];
  return sum / static_cast<double>(animals.size());
}

class FactList {
 public:
  void count(const char* name, const char* title, std::size_t value, const char* meaning) {
    facts_.push_back({name, title, value, COLUMN_KIND::INTEGER, 0, meaning});
  }
  void number(const char* name, const char* title, double value, int decimals, const char* meaning) {
    facts_.push_back({name, title, std::isfinite(value) ? Cell(value) : Cell(), COLUMN_KIND::REAL, decimals, meaning});
  }
  void share(const char* name, const char* title, double value, const char* meaning) {
    facts_.push_back({name, title, value, COLUMN_KIND::PERCENT, 1, meaning});
  }
  std::vector<genetic_fact> take() { return std::move(facts_); }

 private:
  std::vector<genetic_fact> facts_;
};

std::size_t knownFounders(const GeneticPedigree& pedigree, const std::vector<animal_number>& living) {
  const std::vector<animal_number> founders = contributionsTo(pedigree, living).founders;
  return static_cast<std::size_t>(std::count_if(
      founders.begin(), founders.end(), [&](animal_number founder) { return pedigree.isOfKnownOrigin(founder); }));
}

struct inbreeding_level {
  double mean;
  double highest;
};

/// Over known genes; animals without any on one side are not counted.
inbreeding_level knownLevel(const GeneticBasis& basis, const std::vector<animal_number>& living) {
  const std::vector<double> inbreeding = knownInbreeding(basis.pedigree(), GeneticBasis::threads());
  std::vector<animal_number> known;
  std::copy_if(living.begin(), living.end(), std::back_inserter(known),
               [&](animal_number animal) { return !std::isnan(inbreeding[animal]); });
  double highest = known.empty() ? std::nan("") : 0;
  for (const animal_number animal : known) highest = std::max(highest, inbreeding[animal]);
  return {meanOf(known, inbreeding), highest};
}

void addFounders(FactList& facts, const GeneticBasis& basis, const genetic_subject& subject,
                 const genetic_diversity& found, UNKNOWN_PARENTS unknown) {
  const founder_states states = founderStates(basis, subject.animals, unknown);
  const bool all = unknown == UNKNOWN_PARENTS::FOUNDER;
  facts.count("founders", "Founders", all ? found.founders : knownFounders(basis.pedigree(), subject.living),
              "animals without parents whose genes live on");
  facts.count("phantom_founders", "Missing parents", found.phantom_founders,
              all ? "unknown mates; each a separate founder" : "unknown mates; their genes are left out");
  facts.count("living_founders", "Founders alive", states.living, "with living descendants");
  facts.count("potential_founders", "Potential founders", states.potential, "alive, no living descendants: breed them");
  facts.count("lost_founders", "Lost founders", states.lost, "gone, no living descendants anywhere");
  facts.share("known", "Known ancestry", found.known_share, "genes that come from known founders");
}

void addDiversity(FactList& facts, const GeneticBasis& basis, const std::vector<animal_number>& living,
                  const genetic_diversity& found, UNKNOWN_PARENTS unknown) {
  const bool by_known = unknown == UNKNOWN_PARENTS::EXCLUDE;
  const double kinship =
      by_known ? knownKinships(basis.pedigree(), living, GeneticBasis::threads()).mean : found.mean_kinship;
  const inbreeding_level level =
      by_known ? knownLevel(basis, living) : inbreeding_level{found.mean_inbreeding, found.highest_inbreeding};
  facts.number("mean_f", "Mean inbreeding F", level.mean, 4, "of the living; 0.25: offspring of full sibs");
  facts.number("highest_f", "Highest F", level.highest, 4, "of one animal");
  facts.number("mean_kinship", "Mean kinship", kinship, 4, "expected F of offspring from random mating");
  facts.number("gene_diversity", "Gene diversity", 1 - kinship, 4, "kept from the founders' source; goal: 0.90");
  facts.number("fg", "Founder genomes (fg)", 1 / (2 * kinship), 2, "unrelated founders as diverse: 1 / (2 MK)");
  facts.number("fe", "Effective founders (fe)", by_known ? found.effective_known_founders : found.effective_founders, 2,
               "founders, if all contributed equally");
  facts.number("fe_known", "fe without unknown", found.effective_known_founders, 2,
               "fe over the genes of known founders");
}

void addAncestors(FactList& facts, const GeneticBasis& basis, const std::vector<animal_number>& living,
                  UNKNOWN_PARENTS unknown) {
  const auto number = [&](bool members_count) {
    return effectiveAncestors(basis.pedigree(), living,
                              {.members_count = members_count, .known_only = unknown == UNKNOWN_PARENTS::EXCLUDE})
        .number;
  };
  facts.number("fa", "Effective ancestors (fa)", number(false), 2, "far below fe: there have been bottlenecks");
  facts.number("fa_with_members", "fa with the living", number(true), 2, "if the living count as ancestors too");
}

void addGenerations(FactList& facts, const GeneticBasis& basis, const std::vector<animal_number>& living) {
  const generation_numbers generations = generationsOf(basis.pedigree());
  facts.number("equivalent_generations", "Equivalent generations", meanOf(living, generations.equivalent), 2,
               "known ancestors, as complete generations");
  facts.number("generation", "Mean generation", meanOf(living, generations.genetic), 2,
               "founders are 0, offspring parents' mean + 1");
  facts.number("traced_generations", "Traced generations", meanOf(living, generations.traced), 2,
               "generations back with all ancestors known");
  facts.number("maximum_generations", "Longest line", meanOf(living, generations.maximum), 2,
               "generations to the first ancestor");
  facts.number("completeness", "Completeness",
               meanOf(living, completenessIndex(basis.pedigree(), COMPLETENESS_GENERATIONS)), 3,
               "over 5 generations, both sides; 1: complete");
  facts.number("ne_inbreeding", "Ne by inbreeding",
               effectiveSizeByInbreeding(living, basis.terms().inbreeding, generations.equivalent,
                                         INCREASE::SINCE_FIRST_OFFSPRING)
                   .size,
               1, "ideal population in which F rises as fast");
}

Cell textCell(const genetic_fact& fact) {
  const std::string text =
      cellText(fact.value, {.name = "", .title = "", .kind = fact.kind, .decimals = fact.decimals});
  return text.empty() ? Cell("-") : Cell(text);
}

table_column columnOf(const genetic_fact& fact) {
  return {.name = fact.name, .title = fact.title, .kind = fact.kind, .decimals = fact.decimals};
}

}  // namespace

std::vector<genetic_fact> geneticFacts(const GeneticBasis& basis, const genetic_subject& subject,
                                       UNKNOWN_PARENTS unknown) {
  FactList facts;
  const std::vector<animal_number>& living = subject.living;
  const genetic_diversity found = diversityOf(basis.pedigree(), basis.terms(), living);
  facts.count("animals", "Animals", subject.animals.size(), "living or not");
  facts.count("living", "Living animals", living.size(), "all figures below are about them");
  addFounders(facts, basis, subject, found, unknown);
  addDiversity(facts, basis, living, found, unknown);
  addAncestors(facts, basis, living, unknown);
  addGenerations(facts, basis, living);
  return facts.take();
}

Table geneticPage(const GeneticBasis& basis, UNKNOWN_PARENTS unknown) {
  const bool has_rest = !basis.isWholePopulation();
  std::vector<table_column> columns{
      {.name = "statistic", .title = "Statistic"},
      {.name = "view", .title = has_rest ? "This view" : "Value", .alignment = ALIGNMENT::RIGHT}};
  if (has_rest) columns.push_back({.name = "population", .title = "All living", .alignment = ALIGNMENT::RIGHT});
  columns.push_back({.name = "meaning", .title = "What it means"});
  Table table(std::move(columns));
  const std::vector<genetic_fact> of_view = geneticFacts(basis, {basis.animals(), basis.needLiving()}, unknown);
  std::vector<genetic_fact> of_all;
  if (has_rest) of_all = geneticFacts(basis, {basis.wholeStudbook(), basis.wholePopulation()}, unknown);
  for (std::size_t fact = 0; fact < of_view.size(); ++fact) {
    std::vector<Cell> row{of_view[fact].title, textCell(of_view[fact])};
    if (has_rest) row.push_back(textCell(of_all[fact]));
    row.emplace_back(of_view[fact].meaning);
    table.addRow(std::move(row));
  }
  if (unknown == UNKNOWN_PARENTS::EXCLUDE) {
    table.notes.push_back(
        "F, kinship, diversity, founders, fe and fa are over the known genes. Generations and completeness always "
        "count known ancestors; Ne treats unknown parents as founders.");
  }
  addNotes(table, basis.notes(unknown));
  return table;
}

Table geneticRecord(const GeneticBasis& basis, UNKNOWN_PARENTS unknown) {
  std::vector<table_column> columns;
  std::vector<Cell> row;
  for (const genetic_fact& fact : geneticFacts(basis, {basis.animals(), basis.needLiving()}, unknown)) {
    columns.push_back(columnOf(fact));
    row.push_back(fact.value);
  }
  for (const genetic_fact& fact : geneticFacts(basis, {basis.wholeStudbook(), basis.wholePopulation()}, unknown)) {
    table_column column = columnOf(fact);
    column.name = "population_" + fact.name;
    column.group = "population";
    column.key = fact.name;
    columns.push_back(std::move(column));
    row.push_back(fact.value);
  }
  columns.push_back({.name = "without_birth_date", .title = "Living animals without a birth date"});
  row.emplace_back(basis.withoutBirthDate());
  columns.push_back({.name = "unknown", .title = "Unknown parents"});
  row.emplace_back(getText(unknown));
  Table table(std::move(columns));
  table.is_record = true;
  table.addRow(std::move(row));
  return table;
}

}  // namespace spx::console
