#include "console/results/genetics_by_year.h"

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/multi_parent.h"
#include "spx/demography/census.h"
#include "spx/demography/presence.h"
#include "spx/genetics/inbreeding.h"
#include "spx/genetics/kinship.h"
#include "spx/genetics/studbook_pedigree.h"
#include "spx/support/julian_date.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

/// Births of a year whose inbreeding is known.
struct birth_year {
  std::size_t animals = 0;
  double inbreeding = 0;
};

qs_lib::day_number lastDayOf(std::int64_t year) {
  return qs_lib::msToDay(qs_lib::dateToJulian(std::to_string(year) + "-12-31"));
}

}  // namespace

Table inbreedingByYear() {
  std::map<std::int64_t, birth_year> years;
  std::size_t without_date = 0;
  for (const master_data& animal : Animals.records) {
    if (!isInViewRecord(animal, View) || std::isnan(animal.fcoef)) {
      continue;
    }
    if (animal.birth.date == 0) {
      ++without_date;
      continue;
    }
    birth_year& year = years[qs_lib::civilFromDay(animal.birth.date).year];
    ++year.animals;
    year.inbreeding += animal.fcoef;
  }
  Table table({{.name = "year", .title = "Year of birth", .kind = COLUMN_KIND::INTEGER},
               {.name = "animals", .title = "Animals", .kind = COLUMN_KIND::INTEGER, .help = "born in that year"},
               {.name = "mean_f",
                .title = "Mean F",
                .kind = COLUMN_KIND::REAL,
                .decimals = 4,
                .help = "their mean inbreeding coefficient"}});
  for (const auto& [year, births] : years) {
    table.addRow({year, births.animals, births.inbreeding / static_cast<double>(births.animals)});
  }
  table.if_empty = "No animal of the view has a birth date.";
  if (without_date > 0) {
    table.notes.push_back(std::to_string(without_date) + " without a birth date left out.");
  }
  return table;
}

Table diversityByYear() {
  StudbookPedigree studbook;
  if (!studbook.build(Animals, {parent_list, {}})) {
    throw Failure("an animal is its own ancestor (" + studbook.cycle().front() +
                  "), so nothing can be computed from the pedigree; spx check names the cycle");
  }
  const relationship_terms terms = inbreedingOf(studbook.pedigree());
  const Presence presence(Animals.records, View, presenceSettings(View));
  Table table({{.name = "year", .title = "Year", .kind = COLUMN_KIND::INTEGER},
               {.name = "animals", .title = "Animals", .kind = COLUMN_KIND::INTEGER, .help = "present on 31 December"},
               {.name = "mean_kinship", .title = "Mean kinship", .kind = COLUMN_KIND::REAL, .decimals = 4},
               {.name = "gene_diversity",
                .title = "Gene diversity",
                .kind = COLUMN_KIND::REAL,
                .decimals = 4,
                .help = "1 - mean kinship, as a share of that of the founders' source"}});
  table.if_empty = "None of the animals of the view was present.";
  table.notes.push_back(countNote(presence.in_view, presence.left_out));
  const qs_lib::day_number first = std::max(firstDay(presence), View.start_date);
  if (firstDay(presence) == 0 || first > View.end_date) {
    return table;
  }
  const auto last_year = qs_lib::civilFromDay(View.end_date).year;
  for (auto year = qs_lib::civilFromDay(first).year; year <= last_year; ++year) {
    std::vector<animal_number> living;
    for (const position animal : presence.presentOn(std::min(lastDayOf(year), View.end_date))) {
      living.push_back(studbook.number(animal));
    }
    if (!living.empty()) {
      const double kinship = meanKinshipBetween(studbook.pedigree(), terms, living, living);
      table.addRow({year, living.size(), kinship, 1 - kinship});
    }
  }
  return table;
}

}  // namespace spx::console
