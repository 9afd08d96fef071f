#include "spx/core/animal_data.h"
#include "spx/core/identifiers.h"
#include "spx/core/meta_population.h"
#include "spx/core/pseudo_ids.h"
#include "spx/support/console.h"
#include "spx/support/csv_report.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

constexpr double NEONATAL_DAYS = 30;

constexpr char TABLE[] = "filter_test.csv";

// The misspelling "Same itter dam" is part of the format.
constexpr char FILTER_HEADER[] =
    "ID|Unknown sex|Pseudo|"
    "Sire|Wild sire|Unkn sire|Multi sire|Same litter sire|"
    "Dam|Wild dam|Unkn dam|Multi dam|Same itter dam|"
    "Breeder|Living breeder|Potential breeder|"
    "Founder|Potential founder|Pseudo founder|Lost founder|Wild litter|"
    "Neonatal death|Stillbirth|Alive|"
    "Deme view|Taxon view|User view|"
    "Print|Selected?";

void boolCell(qs_lib::CsvReport& table, bool value, bool more = true) {
  table.cell(std::string(value ? "true" : "false"), more);
}

void parentCells(qs_lib::CsvReport& table, const std::string& parent) {
  table.cell(parent, true);
  boolCell(table, parent == WILD_PARENT);
  boolCell(table, parent == UNKNOWN_PARENT);
  boolCell(table, isMultiParent(parent));
  boolCell(table, isSameLitterParent(parent));
}

void founderCells(qs_lib::CsvReport& table, const master_data& animal, qs_lib::day_number day) {
  boolCell(table, isFounder(animal));
  boolCell(table, isPotentialFounder(animal, day));
  boolCell(table, isPseudoFounder(animal.stud_id));
  boolCell(table, isLostFounder(animal, day));
  boolCell(table, isWildLitter(animal));
}

void filterRow(qs_lib::CsvReport& table, const master_data& animal, qs_lib::day_number day) {
  table.cell(animal.stud_id, true);
  boolCell(table, animal.sex == SEX::UNKNOWN);
  boolCell(table, isPseudoIndividual(animal.stud_id));
  parentCells(table, animal.sire_id);
  parentCells(table, animal.dam_id);
  boolCell(table, animal.breeder);
  boolCell(table, isLivingBreeder(animal, day));
  boolCell(table, isPotentialBreeder(animal, day));
  founderCells(table, animal, day);
  boolCell(table, isNeonatalDeath(animal, NEONATAL_DAYS));
  boolCell(table, isStillBirth(animal));
  boolCell(table, isLiving(animal, day));
  boolCell(table, MetaPop.isMemberSelected(currentDeme(animal, day)));
  boolCell(table, isInTaxonView(animal));
  boolCell(table, isInUserView(animal));
  boolCell(table, animal.print);
  boolCell(table, animal.selected, false);
  table.write("\n");
}

}  // namespace

bool TestFilters() {
  qs_lib::display(std::string("Writing filter to: ") + TABLE + "\n");
  return TestFilters(TABLE);
}

bool TestFilters(const std::string& file_name) {
  qs_lib::CsvReport table;
  table.setFileName(file_name);
  table.setStaged(true);
  if (!table.fileOpen()) {
    return false;
  }
  table.writeHeader(FILTER_HEADER);
  for (const master_data& animal : Animals.records) {
    filterRow(table, animal, View.monitor_date);
  }
  return table.fileClose();
}

}  // namespace spx
