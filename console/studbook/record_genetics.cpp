#include "console/studbook/record_genetics.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <thread>

#include "spx/core/animal_data.h"
#include "spx/core/identifiers.h"
#include "spx/core/multi_parent.h"
#include "spx/genetics/record_genetics.h"

#include "console/studbook/loading_output.h"

namespace spx::console {
namespace {

bool lacksNumbers(const master_data& animal) {
  const auto is_unset = [](double number) { return std::isnan(number); };
  return (std::isnan(animal.fcoef) ||
          std::any_of(std::begin(animal.generation), std::end(animal.generation), is_unset)) &&
         !isPseudoIndividual(animal.stud_id);
}

}  // namespace

void computeRecordGenetics() {
  if (std::none_of(Animals.records.begin(), Animals.records.end(), lacksNumbers)) return;
  const LoadingOutput progress("Computing inbreeding");
  StudbookPedigree pedigree;
  if (!pedigree.build(Animals, {parent_list, {}})) {
    std::cerr << "spx: inbreeding and generations are not computed: " << cycleText(pedigree.cycle()) << "\n";
    return;
  }
  fillGenetics(Animals, pedigree, std::max(1U, std::thread::hardware_concurrency()));
  markFounderLineages(Animals, pedigree);
}

std::string cycleText(const std::vector<std::string>& ids) {
  std::string text = "animals are their own ancestors: " + ids.front();
  for (std::size_t place = 1; place < ids.size(); ++place) text += ", whose parent is " + ids[place];
  return text + (ids.size() == 1 ? ", which is its own parent" : ", whose parent is " + ids.front());
}

}  // namespace spx::console
