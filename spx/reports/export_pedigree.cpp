#include "spx/reports/export_pedigree.h"

#include <limits>

#include "spx/core/animal_data.h"
#include "spx/reports/export_table.h"
#include "spx/views/meta_population.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

constexpr char HEADER[] =
    "ID|DAM|SIRE|SEX|BIRTHSITE|BIRTHDATE|DEATHDATE|CENSORED|F|G|TAXON|BREEDER";

const std::string MISSING_PARENT = "NA";
const std::string MALE = "1";
const std::string FEMALE = "2";
const std::string OTHER_SEX = "3";
const std::string YES = "yes";
const std::string NO = "no";

const std::string& sexCode(SEX sex) {
  switch (sex) {
    case SEX::MALE:
      return MALE;
    case SEX::FEMALE:
      return FEMALE;
    default:
      return OTHER_SEX;
  }
}

const std::string& parentCell(const master_data& parent) {
  return isPseudoIndividual(parent.stud_id) ? MISSING_PARENT : parent.stud_id;
}

std::string dateCell(qs_lib::day_number day) {
  return qs_lib::julianToYYYYMMDD(qs_lib::dayToMs(day));
}

int censorCode(const master_data& animal) {
  return animal.death.date != 0 && animal.death.event != MOVE_TYPE::LOST_TO_FOLLOW_UP ? 1 : 0;
}

// What has no whole number of generations becomes the smallest number, which readers take as
// missing.
int wholeGenerations(float generation) {
  const double limit = -static_cast<double>(std::numeric_limits<int>::min());
  const auto value = static_cast<double>(generation);
  return value > -limit && value < limit ? static_cast<int>(value)
                                         : std::numeric_limits<int>::min();
}

void writeRow(qs_lib::CsvReport& table, const pedigree_record& entry) {
  const master_data& animal = Animals.records[entry.animal];
  table.cell(animal.stud_id, true);
  table.cell(parentCell(Animals.records[entry.dam]), true);
  table.cell(parentCell(Animals.records[entry.sire]), true);
  table.cell(sexCode(animal.sex), true);
  table.cell(MetaPop.getMemberName(animal.birth.location), true);
  table.cell(dateCell(animal.birth.date), true);
  table.cell(dateCell(animal.death.date), true);
  table.cell(censorCode(animal), true);
  table.cell(animal.fcoef, 5, true);
  table.cell(wholeGenerations(animal.generation[G_MATERNAL]), true);
  table.cell(Subspecies.getName(animal.taxon), true);
  table.cell(animal.breeder ? YES : NO, false);
  table.write("\n");
}

}  // namespace

ExportPedigree::ExportPedigree() {
  setFileStem("pedigree");
}

ExportPedigree::~ExportPedigree() = default;

bool ExportPedigree::exportToR() {
  qs_lib::CsvReport table;
  if (!initialize()) {
    return false;
  }
  timer_.restart();
  if (!openExportTable(table, *this)) {
    return false;
  }
  table.writeHeader(HEADER);
  for (const pedigree_record& entry : Animals.pedigree) {
    if (!isPseudoIndividual(Animals.records[entry.animal].stud_id)) {
      writeRow(table, entry);
    }
  }
  const bool written = table.fileClose();
  timer_.stop();
  return written;
}

}  // namespace spx
