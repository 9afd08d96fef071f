#include "spx/exports/export_field.h"

#include "spx/core/animal_data.h"
#include "spx/core/master_map.h"
#include "spx/exports/export_table.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

void writeCell(qs_lib::CsvReport& table, const std::string& text) {
  table.cell(text, true);
  table.write("\t");
}

void writeHeader(qs_lib::CsvReport& table, const master_map& fields) {
  for (const auto& [name, text] : fields) {
    writeCell(table, name);
  }
  table.write("\n");
}

void writeValues(qs_lib::CsvReport& table, const master_map& fields) {
  for (const auto& [name, text] : fields) {
    writeCell(table, text);
  }
  table.write("\n");
}

}  // namespace

ExportField::ExportField() {
  setFileStem("animal_data");
  setAppendSex(false);
}

ExportField::~ExportField() = default;

bool ExportField::inAnalysis(const master_data& animal) const {
  return !isPseudoIndividual(animal.stud_id) && (View.origin == BIRTH_TYPE::ALL || View.origin == animal.birth_type) &&
         (View.sex == SEX::ALL || View.sex == animal.sex) && isNotWorse(animal.birth.accuracy, View.birth_accuracy) &&
         isNotWorse(animal.death.accuracy, View.death_accuracy) &&
         isInDates(animal.death.date, {View.start_date, View.end_date}, "[]") && isInTaxonView(animal) &&
         isInUserView(animal);
}

bool ExportField::exportToR() {
  exported_animals_ = 0;
  return initialize() && writeExportTable(*this, timer_, [this](qs_lib::CsvReport& table) {
           table.separator = '\t';
           for (position record = 0; record < Animals.records.size(); ++record) {
             const master_data& animal = Animals.records[record];
             if (!isChosen(record) || !inAnalysis(animal)) {
               continue;
             }
             const master_map fields = masterToMap(animal);
             if (exported_animals_++ == 0) {
               writeHeader(table, fields);
             }
             writeValues(table, fields);
           }
         });
}

}  // namespace spx
