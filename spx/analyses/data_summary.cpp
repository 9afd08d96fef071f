#include "spx/analyses/data_summary.h"

#include "spx/core/animal_data.h"
#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/core/estimated_dates.h"
#include "spx/core/pseudo_ids.h"
#include "spx/support/console.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

bool isUnknown(const std::string& parent) {
  return parent.starts_with(UNKNOWN_PARENT);
}

std::string rightAligned(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string label(const std::string& text) {
  return rightAligned(text, 30) + ": ";
}

std::string countText(const std::string& text, std::int64_t count) {
  return label(text) + rightAligned(std::to_string(count), 6);
}

std::string plainCount(const std::string& text, std::int64_t count) {
  return countText(text, count) + "\n";
}

std::string shareCount(const std::string& text, std::int64_t count, std::int64_t total) {
  return countText(text, count) + " (" +
         qs_lib::percent(static_cast<std::uint64_t>(count), static_cast<std::uint64_t>(total), 1) + ")\n";
}

std::string generalText(const DataSummary& summary) {
  return "1. GENERAL\n" + label("Date") + qs_lib::getTodayAsISO() + "\n" +
         plainCount("Studbook records", summary.records) +
         shareCount("Living animals", summary.living, summary.records) +
         shareCount("Animals died", summary.died, summary.records) +
         // The misspelling is part of the format.
         shareCount("Animals dissappeared", summary.disappeared, summary.records);
}

std::string sexText(const DataSummary& summary) {
  std::string text = "\n2. Sex GROUPS\n";
  for (const auto& [sex, count] : summary.sexes) {
    text += shareCount(getEnumName(sex), count, summary.records);
  }
  return text;
}

std::string parentText(const DataSummary& summary) {
  const std::int64_t records = summary.records;
  return "\n3. UNKNOWN PARENTAGES\n" + shareCount("Animals with unknown parents  ", summary.unknown_both, records) +
         shareCount("Animals with only unknown sire", summary.unknown_sire, records) +
         shareCount("Animals with only unknown dam ", summary.unknown_dam, records) +
         shareCount("Animals with multiple sires   ", summary.group_sire, records) +
         shareCount("Animals with multiple dams    ", summary.group_dam, records);
}

std::string accuracyText(const std::string& title, const DataSummary::accuracy_counts& counts, std::int64_t total) {
  std::string text = "\n" + title + " [n=" + std::to_string(total) + "]\n";
  for (const auto& [accuracy, count] : counts) {
    text += shareCount(getEnumName(accuracy), count, total);
  }
  return text;
}

std::string reproductionText(const DataSummary& summary) {
  return "\n6. AGE AND REPRODUCTION\n" + label("Oldest observed age") + convertDays(summary.oldest_age) +
         " (ID:" + summary.oldest_id + ")\n" + plainCount("Number of breeders", summary.breeders) +
         plainCount("Living breeders", summary.living_breeders);
}

std::string geneticsText(const DataSummary& summary) {
  return "\n7. GENETICS\n" + plainCount("Wild (source) origin", summary.wild_origin) +
         plainCount("Living of wild origin", summary.living_wild_origin) +
         plainCount("Founders", summary.bred_founders) + plainCount("Potential founders", summary.potential_founders);
}

}  // namespace

DataSummary::DataSummary() {
  for (const SEX sex : {SEX::FEMALE, SEX::MALE, SEX::HERMAPHRODITE, SEX::ABNORMAL, SEX::UNKNOWN}) {
    sexes[sex] = 0;
  }
  for (const DATE_ACCURACY accuracy :
       {DATE_ACCURACY::ACCURATE, DATE_ACCURACY::BY_DAY, DATE_ACCURACY::BY_WEEK, DATE_ACCURACY::BY_MONTH,
        DATE_ACCURACY::BY_YEAR, DATE_ACCURACY::DATE_RANGE, DATE_ACCURACY::UNKNOWN}) {
    birth_accuracy[accuracy] = 0;
    death_accuracy[accuracy] = 0;
  }
}

DataSummary::~DataSummary() = default;

bool DataSummary::initialize() {
  if (Animals.records.empty()) {
    spxError(error_text::NO_ANIMALS);
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

// Ages are signed: a death before the birth gives a negative age, which is never the oldest.
void DataSummary::compareAge(const master_data& animal, qs_lib::day_number last_day) {
  const double age =
      static_cast<double>(last_day) - static_cast<double>(animal.birth.date) + static_cast<double>(animal.birth.range);
  if (age > oldest_age) {
    oldest_age = age;
    oldest_id = animal.stud_id;
  }
}

void DataSummary::reportConsole() const {
  const std::string rule = qs_lib::replicateChar('-', 70) + "\n";
  qs_lib::display(rule + "Summary of studbook data\n" + rule + generalText(*this) + sexText(*this) + parentText(*this) +
                  accuracyText("4. BIRTHDATE ACCURACY", birth_accuracy, records) +
                  accuracyText("5. DEATHDATE ACCURACY", death_accuracy, died) + reproductionText(*this) +
                  geneticsText(*this));
}

}  // namespace spx
