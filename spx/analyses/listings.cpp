#include "spx/analyses/listings.h"

#include <cmath>

#include "spx/core/animal_data.h"
#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/core/meta_population.h"
#include "spx/support/console.h"
#include "spx/support/fetch_ahead.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

constexpr char RULE[] =
    "--------+---------+----------------+---------+---------+-----------+-----------+-----+-------+"
    "----+------\n";
constexpr int LINES_PER_PAGE = 20;

// Lines that all listings of the process have shown since the last full page.
int listed_lines = 0;

void column(std::string& line, const std::string& value, std::size_t width) {
  line += value;
  if (value.size() < width) {
    line.append(width - value.size(), ' ');
  }
  line += "| ";
}

std::string dayText(qs_lib::day_number day) {
  return qs_lib::formatJulianDate(qs_lib::dayToMs(day));
}

std::string generationText(const master_data& animal) {
  const float generation = animal.generation[G_GENETIC];
  return generation < 0 ? "   " : qs_lib::realToString(generation, 2);
}

std::string inbreedingText(const master_data& animal) {
  return std::isnan(animal.fcoef) ? "     " : qs_lib::realToString(animal.fcoef, 4);
}

bool hasViewKind(const master_data& animal) {
  return !isPseudoIndividual(animal.stud_id) && (View.origin == BIRTH_TYPE::ALL || View.origin == animal.birth_type) &&
         (View.sex == SEX::ALL || View.sex == animal.sex) &&
         isInGeneration(animal.generation[G_GENETIC], View.low_generation, View.high_generation) &&
         isInFcoef(animal.fcoef, View.low_inbreeding, View.high_inbreeding) &&
         isNotWorse(animal.birth.accuracy, View.birth_accuracy);
}

bool hasViewGroup(const master_data& animal) {
  return isInTaxonView(animal) && isInUserView(animal) && animal.selected;
}

bool livesInView(const master_data& animal) {
  return isLiving(animal, View.monitor_date) && MetaPop.isMemberSelected(currentDeme(animal, View.monitor_date));
}

bool reportEmpty() {
  spxError(error_text::NO_ANIMALS);
  return false;
}

// Prefetches what a line shows.
void fetch(const master_data& animal) {
  qs_lib::fetchAhead(&animal.id_key, &animal.dam_id, &animal.birth, &animal.death, &animal.fcoef);
}

bool listTable() {
  constexpr std::size_t FETCH_AHEAD = 8;
  qs_lib::display(studbookHeader());
  for (std::size_t i = 0; i < Animals.index.size(); ++i) {
    if (i + FETCH_AHEAD < Animals.index.size()) {
      fetch(Animals.records[Animals.index[i + FETCH_AHEAD]]);
    }
    prnMaster(Animals.records[Animals.index[i]]);
  }
  qs_lib::display(studbookFooter());
  qs_lib::pauseKey();
  return true;
}

void flagAll(bool (*flag)(master_data&)) {
  for (master_data& animal : Animals.records) {
    flag(animal);
  }
}

}  // namespace

std::string studbookHeader() {
  return std::string(
             "id      |stud id  | sex            | sire id | dam id  |birth      | death     | Gn  "
             "| Fc    | br | taxon\n") +
         RULE;
}

std::string studbookFooter() {
  return std::string(RULE) + "[+] = breeder\n[*] = selected in pedigree\n";
}

std::string debugHeader() {
  return "id|stud_id|sex|sire_id|dam_id|birth|death|Gs|F|taxon|info\n";
}

std::string masterLine(const master_data& animal) {
  std::string line;
  line.reserve(128);
  column(line, std::to_string(animal.id_key), 8);
  column(line, animal.stud_id, 8);
  column(line, getEnumName(animal.sex), 15);
  column(line, animal.sire_id, 8);
  column(line, animal.dam_id, 8);
  column(line, dayText(animal.birth.date), 10);
  column(line, dayText(animal.death.date), 10);
  column(line, generationText(animal), 4);
  column(line, inbreedingText(animal), 6);
  line += animal.breeder ? "+  | " : "-  | ";
  line += Subspecies.getName(animal.taxon);
  line += animal.selected ? " *\n" : " \n";
  return line;
}

std::string masterDebug(const master_data& animal, const std::string& info) {
  std::string line;
  for (const std::string& value :
       {std::to_string(animal.id_key), animal.stud_id, getEnumName(animal.sex), animal.sire_id, animal.dam_id,
        dayText(animal.birth.date), dayText(animal.death.date), generationText(animal), inbreedingText(animal),
        Subspecies.getName(animal.taxon)}) {
    line += value + "|";
  }
  return line + info + "\n";
}

void prnMaster(const master_data& animal) {
  if (animal.print) {
    qs_lib::display(masterLine(animal));
    ++listed_lines;
  }
  if (listed_lines == LINES_PER_PAGE) {
    qs_lib::pauseKey();
    listed_lines = 0;
  }
}

bool inListing(master_data& animal) {
  animal.print = hasViewKind(animal) && isNotWorse(animal.death.accuracy, View.death_accuracy) && hasViewGroup(animal);
  return animal.print;
}

bool inLiving(master_data& animal) {
  animal.print = hasViewKind(animal) && livesInView(animal) && hasViewGroup(animal);
  return animal.print;
}

bool inPedigree(master_data& animal) {
  animal.print = animal.selected;
  return animal.print;
}

bool listStudbookData(bool all) {
  if (Animals.records.empty()) {
    return reportEmpty();
  }
  if (all) {
    Animals.print(true);
  } else {
    flagAll(inListing);
  }
  return listTable();
}

bool listLiving() {
  if (Animals.records.empty()) {
    return reportEmpty();
  }
  flagAll(inLiving);
  return listTable();
}

bool listOffspring(const std::string& id) {
  if (Animals.records.empty()) {
    return reportEmpty();
  }
  if (!Animals.animalExists(id)) {
    spxError(error_text::UNKNOWN_PARENT_OF_OFFSPRING);
    return false;
  }
  Animals.selectOffspring(id);
  Animals.sortList(SORT_FIELD::BIRTH);
  flagAll(inPedigree);
  return listTable();
}

bool listPedigree(const std::string& id) {
  if (Animals.records.empty()) {
    return reportEmpty();
  }
  Animals.individualPedigree(id);
  Animals.sortList(SORT_FIELD::BIRTH);
  flagAll(inPedigree);
  return listTable();
}

}  // namespace spx
