#include "console/results/effective_size_table.h"

#include <algorithm>
#include <cmath>

#include "spx/genetics/effective_size.h"
#include "spx/genetics/generation_interval.h"
#include "spx/genetics/generations.h"
#include "spx/support/julian_date.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

namespace spx::console {
namespace {

/// The number of pairs grows with the square of the animals; beyond this number only every second,
/// third, ... animal is used.
constexpr std::size_t MOST_FOR_PAIRS = 5000;
constexpr double DAYS_OF_YEAR = 365.25;

std::vector<animal_number> evenSample(const std::vector<animal_number>& animals, std::size_t most) {
  const std::size_t step = (animals.size() + most - 1) / most;
  if (step <= 1) return animals;
  std::vector<animal_number> sample;
  for (std::size_t place = 0; place < animals.size(); place += step) sample.push_back(animals[place]);
  return sample;
}

struct breeders {
  std::size_t males = 0;
  std::size_t females = 0;
};

breeders livingBreeders(const GeneticBasis& basis) {
  const std::vector<std::size_t> offspring = offspringCounts(basis.pedigree());
  breeders found;
  for (const animal_number animal : basis.living()) {
    if (offspring[animal] == 0) continue;
    const SEX sex = basis.record(animal).sex;
    if (sex == SEX::MALE) ++found.males;
    if (sex == SEX::FEMALE) ++found.females;
  }
  return found;
}

/// The range of births of animals whose families are complete: they are so old that they will
/// hardly have more offspring.
struct complete_families {
  double first_birth;
  double last_birth;  ///< as day numbers, of these animals
};

/// From the first birth to the day of the view less the 95th percentile of the ages of parents at a birth.
complete_families completeFamilies(const GeneticBasis& basis, const std::vector<double>& births) {
  std::vector<double> ages;
  double first = std::nan("");
  for (const animal_number animal : basis.animals()) {
    first = std::fmin(first, births[animal]);
    for (const animal_number parent : {basis.pedigree().sire(animal), basis.pedigree().dam(animal)}) {
      if (!basis.pedigree().isNode(parent)) continue;
      const double age = births[animal] - births[parent];
      if (!std::isnan(age)) ages.push_back(age);
    }
  }
  if (ages.empty()) return {first, first};
  constexpr double MOST_PARENTS = 0.95;
  const auto old = ages.begin() + static_cast<std::ptrdiff_t>(MOST_PARENTS * static_cast<double>(ages.size() - 1));
  std::nth_element(ages.begin(), old, ages.end());
  return {first, static_cast<double>(View.monitor_date) - *old};
}

/// By parent: the number of its offspring among the living; parents without any are left out.
std::vector<std::size_t> familySizes(const GeneticBasis& basis) {
  std::vector<std::size_t> counts(basis.pedigree().size());
  for (const animal_number animal : basis.living()) {
    for (const animal_number parent : {basis.pedigree().sire(animal), basis.pedigree().dam(animal)}) {
      if (basis.pedigree().isNode(parent) && !basis.pedigree().isGroup(parent)) ++counts[parent];
    }
  }
  counts.erase(std::remove(counts.begin(), counts.end(), std::size_t{0}), counts.end());
  return counts;
}

std::string yearText(double day) {
  return std::to_string(qs_lib::civilFromDay(static_cast<qs_lib::day_number>(day)).year);
}

/// A size that is not finite is shown as missing.
Cell sizeCell(double size) {
  return std::isfinite(size) ? Cell(size) : Cell();
}

}  // namespace

Table effectiveSizeTable(const GeneticBasis& basis) {
  const auto number = [](const char* name, const char* title, const char* help = "") {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = 1, .help = help};
  };
  Table table(
      {{.name = "method", .title = "Method", .in_text = false},
       {.name = "title", .title = "Effective size by"},
       number("ne", "Ne",
              "the size of an ideal population that would lose diversity at the same rate; none where no loss is "
              "seen"),
       number("se", "SE", "standard error"),
       number("low", "Low", "lower end of the 95 % interval"),
       number("high", "High", "upper end of the interval; none where the data give no limit"),
       {.name = "used", .title = "Used", .kind = COLUMN_KIND::INTEGER, .help = "animals that the number is based on"},
       {.name = "left_out",
        .title = "Left out",
        .kind = COLUMN_KIND::INTEGER,
        .help = "animals that the method cannot use"},
       {.name = "assumes", .title = "What it assumes", .in_text = false}});
  const std::vector<animal_number>& living = basis.needLiving();
  const std::vector<double> equivalent = generationsOf(basis.pedigree()).equivalent;
  const std::vector<double>& inbreeding = basis.terms().inbreeding;
  const auto add = [&](const char* method, const char* title, const effective_size& found, const char* assumes) {
    table.addRow({method, title, sizeCell(found.size), sizeCell(found.standard_error), sizeCell(found.low),
                  sizeCell(found.high), found.used, found.left_out, assumes});
    table.notes.push_back(std::string(title) + ": " + assumes + ".");
  };
  const breeders breeding = livingBreeders(basis);
  const births_and_sexes facts = birthsAndSexes(basis);
  const double interval = generationIntervals(basis.pedigree(), facts.births, facts.sexes, basis.animals()).mean;
  const std::vector<animal_number> sample = evenSample(living, MOST_FOR_PAIRS);
  add("inbreeding", "increase in inbreeding",
      effectiveSizeByInbreeding(living, inbreeding, equivalent, INCREASE::SINCE_FIRST_OFFSPRING),
      "the living; F grew evenly over the generations after the founders' offspring (Gutiérrez et al. 2009)");
  add("inbreeding_2008", "the same, counted from the founders",
      effectiveSizeByInbreeding(living, inbreeding, equivalent, INCREASE::SINCE_FOUNDERS),
      "as before, with the exponent 1/t (Gutiérrez et al. 2008)");
  add("kinship", "increase in kinship",
      effectiveSizeByKinship(basis.pedigree(), basis.terms(), sample, equivalent, GeneticBasis::threads()),
      "all pairs of the living; also valid where mating avoids relatives (Cervantes et al. 2011)");
  add("trend", "trend of F over births", effectiveSizeByTrend(basis.animals(), inbreeding, facts.births, interval),
      "all animals of the view by birth date; ln(1 - F) falls by the same in every generation (Pérez-Enciso 1995)");
  add("sex_ratio", "sex ratio of breeders", effectiveSizeBySexRatio(breeding.males, breeding.females),
      "the living that have bred; all of a sex have equal chances (Wright 1931)");
  add("family_size", "family sizes", effectiveSizeByFamilySize(familySizes(basis)),
      "the parents of the living; generations do not overlap, families are complete (Crow & Kimura 1970)");
  const complete_families families = completeFamilies(basis, facts.births);
  add("lifetime_families", "lifetime families",
      effectiveSizeByLifetimeFamilies(basis.pedigree(), facts.births, facts.sexes, basis.animals(),
                                      families.first_birth, families.last_birth, interval),
      "animals of the view old enough to have all their offspring; a stable population, generations may overlap (Hill "
      "1979)");
  if (families.last_birth > families.first_birth) {
    table.notes.push_back("Lifetime families are those of animals born until " + yearText(families.last_birth) +
                          ": 19 of 20 parents were at most as old at a birth as these animals are now.");
  }
  if (sample.size() < living.size()) {
    table.notes.push_back("Kinship: of " + std::to_string(living.size()) + " living animals " +
                          std::to_string(sample.size()) + " were taken at even intervals.");
  }
  if (!std::isnan(interval)) {
    table.notes.push_back("Generation interval " + qs_lib::realToString(interval / DAYS_OF_YEAR, 2) +
                          " years (spx effective-size --intervals).");
  }
  addNotes(table, basis.notes());
  table.notes.emplace_back("Unknown parents count as unrelated founders.");
  return table;
}

Table generationIntervalTable(const GeneticBasis& basis) {
  const auto years = [](const char* name, const char* title, const char* help) {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = 2, .help = help};
  };
  Table table({{.name = "path", .title = "Path"},
               years("mean", "Mean age", "of the parent at the birth, in years"),
               years("se", "SE", "standard error"),
               {.name = "births",
                .title = "Births",
                .kind = COLUMN_KIND::INTEGER,
                .help = "of offspring that have bred themselves; the youngest animals have not had the time to"}});
  const births_and_sexes facts = birthsAndSexes(basis);
  const generation_intervals found = generationIntervals(basis.pedigree(), facts.births, facts.sexes, basis.animals());
  const auto add = [&](const char* name, const interval_path& path) {
    table.addRow({name, path.mean / DAYS_OF_YEAR, path.standard_error / DAYS_OF_YEAR, path.births});
  };
  add("sire to son", found.sire_son);
  add("sire to daughter", found.sire_daughter);
  add("dam to son", found.dam_son);
  add("dam to daughter", found.dam_daughter);
  table.addRow({"mean of the paths", found.mean / DAYS_OF_YEAR});
  addNotes(table, basis.notes());
  return table;
}

}  // namespace spx::console
