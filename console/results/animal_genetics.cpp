#include "console/results/animal_genetics.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "spx/core/meta_population.h"
#include "spx/genetics/common_ancestors.h"
#include "spx/genetics/diversity.h"
#include "spx/genetics/founders.h"
#include "spx/genetics/generation_interval.h"
#include "spx/genetics/generations.h"
#include "spx/genetics/kinship.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/output/animal_table.h"
#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

const std::vector<animal_number>& ofView(const GeneticBasis& basis, const listed_animals& who) {
  return who.living ? basis.needLiving() : basis.needAnimals();
}

std::vector<animal_number> listed(const GeneticBasis& basis, const listed_animals& who) {
  if (!who.ids.empty()) return basis.numbers(who.ids);
  return basis.sortedById(ofView(basis, who));
}

double meanOf(const std::vector<animal_number>& animals, const std::vector<double>& values) {
  double sum = 0;
  for (const animal_number animal : animals) sum += values[animal];
  return sum / static_cast<double>(animals.size());
}

std::string fourDigits(double value) {
  return qs_lib::realToString(value, 4);
}

struct shared_ancestors {
  animal_number animal;
  std::vector<common_ancestor> ancestors;
};

std::vector<shared_ancestors> ancestorsOfParents(const GeneticBasis& basis, const std::vector<animal_number>& animals) {
  std::vector<shared_ancestors> found;
  const GeneticPedigree& pedigree = basis.pedigree();
  for (const animal_number animal : animals) {
    const animal_number sire = pedigree.sire(animal);
    const animal_number dam = pedigree.dam(animal);
    if (!pedigree.isNode(sire) || !pedigree.isNode(dam)) continue;
    found.push_back({animal, commonAncestors(pedigree, basis.terms(), sire, dam)});
  }
  return found;
}

void noteCommonAncestors(Table& table, const GeneticBasis& basis, const std::vector<animal_number>& animals) {
  constexpr std::size_t MOST_NAMED = 8;
  for (const auto& [animal, ancestors] : ancestorsOfParents(basis, animals)) {
    if (ancestors.empty()) continue;
    std::string note = "Common ancestors of the parents of " + basis.id(animal) + ", with their part of F:";
    for (std::size_t place = 0; place < std::min(ancestors.size(), MOST_NAMED); ++place) {
      note += (place == 0 ? " " : ", ") + basis.id(ancestors[place].animal) + " (" +
              fourDigits(ancestors[place].kinship) + ")";
    }
    if (ancestors.size() > MOST_NAMED)
      note += " and " + std::to_string(ancestors.size() - MOST_NAMED) + " more (--ancestors)";
    table.notes.push_back(note + ".");
  }
}

std::string placeOf(const master_data& animal) {
  const packed_deme place = currentDeme(animal, View.monitor_date);
  return place == 0 ? "" : MetaPop.getMemberName(place);
}

}  // namespace

Table inbreedingTable(const GeneticBasis& basis, const listed_animals& who, UNKNOWN_PARENTS unknown) {
  Table table({{.name = "id", .title = "ID"},
               {.name = "f",
                .title = "F",
                .kind = COLUMN_KIND::REAL,
                .decimals = 4,
                .help = "inbreeding: the chance that both genes of a pair come from the same gene of one ancestor"},
               {.name = "ancestral_f",
                .title = "Ancestral F",
                .kind = COLUMN_KIND::REAL,
                .decimals = 4,
                .help = "the chance that a gene was already inbred in an ancestor (Ballou 1997)"},
               {.name = "sire", .title = "Sire", .shown = parentText},
               {.name = "dam", .title = "Dam", .shown = parentText}});
  const std::vector<animal_number> animals = listed(basis, who);
  const bool by_known = unknown == UNKNOWN_PARENTS::EXCLUDE;
  const std::vector<double> inbreeding =
      by_known ? knownInbreeding(basis.pedigree(), GeneticBasis::threads()) : basis.terms().inbreeding;
  const std::vector<double> ancestral = ancestralInbreeding(basis.pedigree(), basis.terms().inbreeding);
  double sum = 0;
  std::size_t known = 0;
  std::size_t inbred = 0;
  for (const animal_number animal : animals) {
    const master_data& record = basis.record(animal);
    table.addRow({record.stud_id, inbreeding[animal], ancestral[animal], record.sire_id, record.dam_id});
    if (std::isnan(inbreeding[animal])) continue;
    ++known;
    sum += inbreeding[animal];
    if (inbreeding[animal] > 0) ++inbred;
  }
  if (animals.size() > 1 && known > 0) {
    table.notes.push_back("Mean F " + fourDigits(sum / static_cast<double>(known)) + "; " + std::to_string(inbred) +
                          " of " + std::to_string(known) + " animals are inbred.");
  }
  if (!who.ids.empty()) noteCommonAncestors(table, basis, animals);
  addNotes(table, basis.notes(unknown));
  if (by_known) table.notes.emplace_back("Ancestral F always treats unknown parents as unrelated founders.");
  return table;
}

Table partialInbreedingTable(const GeneticBasis& basis, const listed_animals& who) {
  Table table(
      {{.name = "id", .title = "ID"},
       {.name = "founder", .title = "Founder", .help = "the founder whose gene is doubled; empty: unknown parents"},
       {.name = "partial_f",
        .title = "Partial F",
        .kind = COLUMN_KIND::REAL,
        .decimals = 4,
        .help = "its part of F; the parts of an animal add up to its F (Lacy, Alaks & Walsh 1996)"}});
  table.if_empty = "None of these animals is inbred.";
  const std::vector<animal_number> animals = listed(basis, who);
  const GeneticPedigree part = basis.pedigree().ancestorsOf(animals);
  std::vector<animal_number> members;
  for (const animal_number animal : animals) members.push_back(part.number(animal));
  std::vector<double> rest = inbreedingOf(part, GeneticBasis::threads()).inbreeding;
  struct cause {
    animal_number founder;
    std::vector<double> inbreeding;  // of the members
  };
  std::vector<cause> causes;
  for (const animal_number founder : contributionsTo(part, members).founders) {
    const std::vector<double> by_founder =
        inbreedingBySources(part, founderShares(part, founder), GeneticBasis::threads()).inbreeding;
    cause found{static_cast<animal_number>(part.row(founder)), {}};
    for (const animal_number member : members) found.inbreeding.push_back(by_founder[member]);
    for (const animal_number member : members) rest[member] -= by_founder[member];
    causes.push_back(std::move(found));
  }
  constexpr double ROUNDING = 1e-12;
  for (std::size_t member = 0; member < members.size(); ++member) {
    for (const cause& each : causes) {
      if (each.inbreeding[member] > ROUNDING) {
        table.addRow({basis.id(animals[member]), basis.id(each.founder), each.inbreeding[member]});
      }
    }
    if (rest[members[member]] > ROUNDING) table.addRow({basis.id(animals[member]), Cell(), rest[members[member]]});
  }
  addNotes(table, basis.notes());
  return table;
}

Table commonAncestorTable(const GeneticBasis& basis, const listed_animals& who) {
  Table table(
      {{.name = "id", .title = "ID"},
       {.name = "ancestor", .title = "Ancestor", .help = "of both parents, or one parent that descends into the other"},
       {.name = "f_part",
        .title = "Part of F",
        .kind = COLUMN_KIND::REAL,
        .decimals = 4,
        .help = "what the ancestor adds beyond its own ancestors; the parts add up to F"}});
  table.if_empty = "The parents of these animals have no common ancestor.";
  for (const auto& [animal, ancestors] : ancestorsOfParents(basis, listed(basis, who))) {
    for (const common_ancestor& each : ancestors) {
      table.addRow({basis.id(animal), basis.id(each.animal), each.kinship});
    }
  }
  addNotes(table, basis.notes());
  return table;
}

Table meanKinshipTable(const GeneticBasis& basis, UNKNOWN_PARENTS unknown) {
  Table table(
      {{.name = "id", .title = "ID"},
       {.name = "sex", .title = "Sex"},
       {.name = "mk",
        .title = "Mean kinship",
        .kind = COLUMN_KIND::REAL,
        .decimals = 4,
        .help =
            "average kinship with all living animals of the view, itself included; low: few relatives, breed it first"},
       {.name = "known",
        .title = "Known",
        .kind = COLUMN_KIND::PERCENT,
        .decimals = 0,
        .help = "share of its genes that comes from known founders"},
       {.name = "f", .title = "F", .kind = COLUMN_KIND::REAL, .decimals = 4, .help = "inbreeding of the animal itself"},
       {.name = "offspring",
        .title = "Offspring",
        .kind = COLUMN_KIND::INTEGER,
        .help = "recorded so far, living or not"},
       {.name = "age",
        .title = "Age",
        .kind = COLUMN_KIND::REAL,
        .decimals = 1,
        .help = "in years on the day of the view"},
       {.name = "location", .title = "Location"}});
  const std::vector<animal_number>& living = basis.needLiving();
  const bool by_known = unknown == UNKNOWN_PARENTS::EXCLUDE;
  const unsigned threads = GeneticBasis::threads();
  known_kinships kinships;
  if (by_known) {
    kinships = knownKinships(basis.pedigree(), living, threads);
  } else {
    kinships.of_animals = meanKinships(basis.pedigree(), basis.terms(), living);
    kinships.mean = meanOf(living, kinships.of_animals);
  }
  const std::vector<double>& means = kinships.of_animals;
  const std::vector<double> inbreeding =
      by_known ? knownInbreeding(basis.pedigree(), threads) : basis.terms().inbreeding;
  const std::vector<double> known = knownShares(basis.pedigree());
  const std::vector<std::size_t> offspring = offspringCounts(basis.pedigree());
  std::vector<animal_number> order = living;
  std::stable_sort(order.begin(), order.end(), [&](animal_number a, animal_number b) {
    return std::isnan(means[b]) ? !std::isnan(means[a]) : means[a] < means[b];
  });
  for (const animal_number animal : order) {
    const master_data& record = basis.record(animal);
    table.addRow({record.stud_id, getEnumName(record.sex), means[animal], known[animal], inbreeding[animal],
                  offspring[animal], ageInYears(record), placeOf(record)});
  }
  table.notes.push_back(counted(living.size(), "living animal") + "; their mean kinship is " +
                        fourDigits(kinships.mean) + ", their gene diversity " + fourDigits(1 - kinships.mean) + ".");
  addNotes(table, basis.notes(unknown));
  return table;
}

Table generationsTable(const GeneticBasis& basis, const listed_animals& who) {
  const auto number = [](const char* name, const char* title, const char* help, int decimals = 0) {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = decimals, .help = help};
  };
  Table table({{.name = "id", .title = "ID"},
               number("cites", "CITES", "0 for founders, else 1 + the lower of the known parents' numbers"),
               number("genetic", "Genetic", "1 + the mean of the known parents' numbers", 2),
               number("maternal", "Maternal", "1 + the dam's number", 2),
               number("equivalent", "Equivalent", "complete generations that the known ancestors make up", 2),
               number("traced", "Traced", "generations back in which every ancestor is known"),
               number("maximum", "Maximum", "generations back to the most distant ancestor")});
  const std::vector<animal_number> animals = listed(basis, who);
  const generation_numbers found = generationsOf(basis.pedigree());
  for (const animal_number animal : animals) {
    table.addRow({basis.id(animal), found.cites[animal], found.genetic[animal], found.maternal[animal],
                  found.equivalent[animal], found.traced[animal], found.maximum[animal]});
  }
  if (animals.size() > 1) {
    table.notes.push_back("Means of " + std::to_string(animals.size()) + " animals: genetic " +
                          qs_lib::realToString(meanOf(animals, found.genetic), 2) + ", equivalent " +
                          qs_lib::realToString(meanOf(animals, found.equivalent), 2) + ", traced " +
                          qs_lib::realToString(meanOf(animals, found.traced), 2) + ", maximum " +
                          qs_lib::realToString(meanOf(animals, found.maximum), 2) + ".");
  }
  addNotes(table, basis.notes());
  return table;
}

Table completenessTable(const GeneticBasis& basis, const listed_animals& who, std::size_t generations) {
  std::vector<table_column> columns{
      {.name = "id", .title = "ID"},
      {.name = "index",
       .title = "Index",
       .kind = COLUMN_KIND::REAL,
       .decimals = 3,
       .help = "completeness of both sides over these generations, 0 to 1 (MacCluer et al. 1983)"}};
  for (std::size_t generation = 1; generation <= generations; ++generation) {
    columns.push_back(
        {.name = "g" + std::to_string(generation),
         .title = "G" + std::to_string(generation),
         .kind = COLUMN_KIND::PERCENT,
         .decimals = 0,
         .help = generation == 1
                     ? "share of the ancestors known in that generation back: 2 parents, 4 grandparents, ..."
                     : ""});
  }
  Table table(std::move(columns));
  const std::vector<animal_number> animals = listed(basis, who);
  const auto known = completenessByGeneration(basis.pedigree(), generations);
  const std::vector<double> index = completenessIndex(basis.pedigree(), generations);
  for (const animal_number animal : animals) {
    std::vector<Cell> row{basis.id(animal), index[animal]};
    for (const std::vector<double>& of_generation : known) row.emplace_back(of_generation[animal]);
    table.addRow(std::move(row));
  }
  if (animals.size() > 1) {
    std::string note = "Means of " + std::to_string(animals.size()) + " animals: index " +
                       qs_lib::realToString(meanOf(animals, index), 3);
    for (std::size_t generation = 0; generation < generations; ++generation) {
      note += ", G" + std::to_string(generation + 1) + " " +
              qs_lib::realToString(100 * meanOf(animals, known[generation]), 0) + " %";
    }
    table.notes.push_back(note + ".");
  }
  addNotes(table, basis.notes());
  return table;
}

}  // namespace spx::console
