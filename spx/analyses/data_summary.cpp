#include "spx/analyses/data_summary.h"

#include <iomanip>
#include <iostream>

#include "spx/core/animal_data.h"
#include "spx/core/errors.h"
#include "spx/core/estimated_dates.h"
#include "spx/core/pseudo_ids.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

bool isUnknown(const std::string& parent) {
  return parent.starts_with(UNKNOWN_PARENT);
}

// Both fields are right-aligned whatever adjustment an earlier listing left behind, and numbers are
// written as texts: the stream may have been given a locale that groups digits.
std::ostream& label(const std::string& text) {
  return std::cout << std::right << std::setw(30) << text << ": ";
}

std::ostream& countLine(const std::string& text, std::int64_t count) {
  return label(text) << std::setw(6) << std::to_string(count);
}

void plainCount(const std::string& text, std::int64_t count) {
  countLine(text, count) << "\n";
}

void shareCount(const std::string& text, std::int64_t count, std::int64_t total) {
  countLine(text, count) << " ("
                         << qs_lib::percent(static_cast<std::uint64_t>(count),
                                            static_cast<std::uint64_t>(total), 1)
                         << ")\n";
}

}  // namespace

DataSummary::DataSummary() {
  for (const SEX sex : {SEX::FEMALE, SEX::MALE, SEX::HERMAPHRODITE, SEX::ABNORMAL, SEX::UNKNOWN}) {
    sexes[sex] = 0;
  }
  for (const DATE_ACCURACY accuracy :
       {DATE_ACCURACY::ACCURATE, DATE_ACCURACY::BY_DAY, DATE_ACCURACY::BY_WEEK,
        DATE_ACCURACY::BY_MONTH, DATE_ACCURACY::BY_YEAR, DATE_ACCURACY::DATE_RANGE,
        DATE_ACCURACY::UNKNOWN}) {
    birth_accuracy[accuracy] = 0;
    death_accuracy[accuracy] = 0;
  }
}

DataSummary::~DataSummary() = default;

bool DataSummary::initialize() {
  if (Animals.records.empty()) {
    spxError("No animals in list");
    return false;
  }
  if (Animals.breedersStale()) {
    Animals.flagBreeders();
  }
  return true;
}

bool DataSummary::analyse() {
  records = static_cast<std::int64_t>(Animals.records.size());
  const qs_lib::day_number reference = View.end_date != 0 ? View.end_date : View.start_date;
  std::int64_t skipped = 0;
  for (const master_data& animal : Animals.records) {
    if (isPseudoIndividual(animal.stud_id)) {
      ++skipped;
      continue;
    }
    ++sexes[animal.sex];
    ++birth_accuracy[animal.birth.accuracy];
    countFounder(animal, isLiving(animal, reference));
    countParents(animal);
    countLife(animal, reference);
  }
  records -= skipped;
  return true;
}

void DataSummary::countFounder(const master_data& animal, bool is_living) {
  if (!isFounder(animal)) {
    return;
  }
  ++wild_origin;
  bred_founders += animal.breeder;
  living_wild_origin += is_living;
  potential_founders += is_living && !animal.breeder;
}

void DataSummary::countParents(const master_data& animal) {
  const bool sire_unknown = isUnknown(animal.sire_id);
  const bool dam_unknown = isUnknown(animal.dam_id);
  unknown_both += sire_unknown && dam_unknown;
  unknown_sire += sire_unknown && !dam_unknown;
  unknown_dam += dam_unknown && !sire_unknown;
  group_sire += isMultiParent(animal.sire_id);
  group_dam += isMultiParent(animal.dam_id);
}

void DataSummary::countLife(const master_data& animal, qs_lib::day_number reference) {
  breeders += animal.breeder;
  if (isLiving(animal, reference)) {
    ++living;
    living_breeders += animal.breeder;
    compareAge(animal, reference);
    return;
  }
  if (animal.death.event == MOVE_TYPE::LOST_TO_FOLLOW_UP) {
    ++disappeared;
  } else {
    ++died;
  }
  if (animal.death.date != 0) {
    ++death_accuracy[animal.death.accuracy];
    compareAge(animal, animal.death.date);
  }
}

// Ages are signed: a death before the birth makes no record age.
void DataSummary::compareAge(const master_data& animal, qs_lib::day_number last_day) {
  const double age = static_cast<double>(last_day) - static_cast<double>(animal.birth.date) +
                     static_cast<double>(animal.birth.range);
  if (age > oldest_age) {
    oldest_age = age;
    oldest_id = animal.stud_id;
  }
}

void DataSummary::reportConsole() const {
  const std::string rule = qs_lib::replicateChar('-', 70) + "\n";
  std::cout << rule << "Summary of studbook data\n" << rule;
  printGeneral();
  printSexes();
  printParents();
  printAccuracies("4. BIRTHDATE ACCURACY", birth_accuracy, records);
  printAccuracies("5. DEATHDATE ACCURACY", death_accuracy, died);
  printReproduction();
  printGenetics();
}

void DataSummary::printGeneral() const {
  std::cout << "1. GENERAL\n";
  label("Date") << qs_lib::getTodayAsISO() << "\n";
  plainCount("Studbook records", records);
  shareCount("Living animals", living, records);
  shareCount("Animals died", died, records);
  // Misspelt as ever: scripts look for this label.
  shareCount("Animals dissappeared", disappeared, records);
}

void DataSummary::printSexes() const {
  std::cout << "\n2. Sex GROUPS\n";
  for (const auto& [sex, count] : sexes) {
    shareCount(getEnumName(sex), count, records);
  }
}

void DataSummary::printParents() const {
  std::cout << "\n3. UNKNOWN PARENTAGES\n";
  shareCount("Animals with unknown parents  ", unknown_both, records);
  shareCount("Animals with only unknown sire", unknown_sire, records);
  shareCount("Animals with only unknown dam ", unknown_dam, records);
  shareCount("Animals with multiple sires   ", group_sire, records);
  shareCount("Animals with multiple dams    ", group_dam, records);
}

void DataSummary::printAccuracies(const std::string& title, const accuracy_counts& counts,
                                  std::int64_t total) const {
  std::cout << "\n" << title << " [n=" << std::to_string(total) << "]\n";
  for (const auto& [accuracy, count] : counts) {
    shareCount(getEnumName(accuracy), count, total);
  }
}

void DataSummary::printReproduction() const {
  std::cout << "\n6. AGE AND REPRODUCTION\n";
  label("Oldest observed age") << convertDays(oldest_age) << " (ID:" << oldest_id << ")\n";
  plainCount("Number of breeders", breeders);
  plainCount("Living breeders", living_breeders);
}

void DataSummary::printGenetics() const {
  std::cout << "\n7. GENETICS\n";
  plainCount("Wild (source) origin", wild_origin);
  plainCount("Living of wild origin", living_wild_origin);
  plainCount("Founders", bred_founders);
  plainCount("Potential founders", potential_founders);
}

}  // namespace spx
