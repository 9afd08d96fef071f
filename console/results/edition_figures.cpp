#include "console/results/edition_figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "spx/core/animal_data.h"
#include "spx/core/multi_parent.h"
#include "spx/demography/presence.h"
#include "spx/genetics/diversity.h"
#include "spx/genetics/inbreeding.h"
#include "spx/genetics/studbook_pedigree.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/silence.h"
#include "console/studbook/load_studbook.h"

namespace spx::console {
namespace {

std::string decimals(double number) {
  if (std::isnan(number)) {
    return std::string();
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.4f", number);
  return text.data();
}

std::vector<position> livingToday() {
  DataFilter everything;
  everything.origin = BIRTH_TYPE::ALL;
  const qs_lib::day_number today = qs_lib::msToDay(qs_lib::dateToJulian(qs_lib::getTodayAsISO()));
  return Presence(Animals.records, everything, presenceSettings(everything)).presentOn(today);
}

genetic_diversity diversityOfLiving(const std::vector<position>& living) {
  StudbookPedigree studbook;
  if (!studbook.build(Animals, {parent_list, {}})) {
    throw Failure("the parents form a cycle");
  }
  std::vector<animal_number> numbers;
  for (const position record : living) {
    numbers.push_back(studbook.number(record));
  }
  std::erase(numbers, UNKNOWN_SOURCE);
  return diversityOf(studbook.pedigree(), inbreedingOf(studbook.pedigree()), numbers);
}

}  // namespace

std::vector<studbook_figure> figuresOf(const studbook_files& files) {
  const Silence silence;
  loadStudbook(files);
  const auto animals = std::count_if(Animals.records.begin(), Animals.records.end(),
                                     [](const master_data& animal) { return animal.birth.location != 0; });
  const std::vector<position> living = livingToday();
  const genetic_diversity genes = diversityOfLiving(living);
  dropStudbook();
  return {{"animals", std::to_string(animals)},
          {"living", std::to_string(living.size())},
          {"founders", std::to_string(genes.founders)},
          {"mean inbreeding", decimals(genes.mean_inbreeding)},
          {"gene diversity", decimals(genes.gene_diversity)}};
}

}  // namespace spx::console
