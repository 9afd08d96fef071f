// A minimal host: it fills the store with a small studbook, checks it, builds the pedigree, prints
// a summary and the gene diversity, and exports the pedigree as a table for R.
//
//     host DIRECTORY      writes pedigree.csv into the existing directory
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "spx/spx.h"

namespace {

/// An animal of the example. A parent is an ID, WILD or UNK; an empty date is unknown.
struct animal_row {
  const char* id;
  const char* sire;
  const char* dam;
  spx::SEX sex;
  const char* birth;
  const char* death;
};

// 1 and 2 come from the wild; 5 has a birth date before those of its parents, which the check finds.
constexpr animal_row ANIMALS[] = {
    {"1", "WILD", "WILD", spx::SEX::MALE, "1990-04-01", "2004-01-15"},
    {"2", "WILD", "WILD", spx::SEX::FEMALE, "1991-05-12", ""},
    {"3", "1", "2", spx::SEX::FEMALE, "1996-06-03", ""},
    {"4", "1", "2", spx::SEX::MALE, "1998-05-20", "2001-09-30"},
    {"5", "4", "3", spx::SEX::FEMALE, "1996-01-01", ""},
};

void addAnimal(const animal_row& row) {
  spx::master_data animal;
  spx::initializeMaster(animal);  // parents unknown, no dates, nothing computed
  animal.stud_id = row.id;
  animal.sire_id = row.sire;
  animal.dam_id = row.dam;
  animal.sex = row.sex;
  animal.birth_type = animal.sire_id == "WILD" ? spx::BIRTH_TYPE::WILD_BORN : spx::BIRTH_TYPE::CAPTIVE_BORN;
  animal.birth.date = qs_lib::msToDay(qs_lib::dateToJulian(row.birth));
  animal.death.date = qs_lib::msToDay(qs_lib::dateToJulian(row.death));
  spx::Animals.checkPseudoFounder(animal);  // names the wild mate of a known parent
  spx::Animals.addMaster(animal);
}

bool load() {
  if (!spx::Animals.initialize(std::size(ANIMALS))) return false;
  std::for_each(std::begin(ANIMALS), std::end(ANIMALS), addAnimal);
  return spx::Animals.validate() && spx::Animals.createIndex(spx::SORT_FIELD::STUDBOOK_ID) &&
         spx::Animals.createLookup() && spx::Animals.assignIdKeys() && spx::Animals.populationPedigree() &&
         spx::Animals.flagBreeders();
}

bool summarise() {
  spx::View.end_date = qs_lib::msToDay(qs_lib::dateToJulian("2005-12-31"));  // else today
  spx::DataSummary summary;
  if (!summary.initialize() || !summary.analyse()) return false;
  summary.reportConsole();
  return true;
}

bool showGenetics() {
  spx::StudbookPedigree studbook;
  if (!studbook.build(spx::Animals, {spx::parent_list, {}})) return false;  // studbook.cycle() names the animals
  const spx::relationship_terms terms = spx::inbreedingOf(studbook.pedigree());
  std::vector<spx::animal_number> living;  // the set that is asked about
  for (spx::position record = 0; record < spx::Animals.records.size(); ++record) {
    const spx::master_data& animal = spx::Animals.records[record];
    if (spx::isPseudoIndividual(animal.stud_id) || !spx::isLiving(animal, spx::View.end_date)) continue;
    living.push_back(studbook.number(record));
  }
  const spx::genetic_diversity state = spx::diversityOf(studbook.pedigree(), terms, living);
  std::printf("Gene diversity of %zu living animals: %.4f\n", state.animals, state.gene_diversity);
  return true;
}

bool exportPedigree(const std::string& directory) {
  spx::ExportPedigree pedigree;
  pedigree.setReportDirectory(directory);
  return pedigree.exportToR();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Usage: %s DIRECTORY\n", argv[0]);
    return 2;
  }
  if (!load()) return 1;
  for (const spx::inconsistency& finding : spx::Animals.inconsistencies) {
    std::printf("%s\n", spx::inconsistencyText(finding).c_str());
  }
  return summarise() && showGenetics() && exportPedigree(argv[1]) ? 0 : 1;
}
