#include "spx/genetics/record_genetics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "spx/genetics/founders.h"
#include "spx/genetics/generations.h"
#include "spx/genetics/inbreeding.h"

namespace spx {
namespace {

constexpr std::size_t MOST_LINEAGES = 255;

void fillMissing(float& stored, double computed) {
  if (std::isnan(stored)) stored = static_cast<float>(computed);
}

std::vector<animal_number> tellableFounders(const GeneticPedigree& pedigree) {
  std::vector<animal_number> everybody;
  for (animal_number node = 0; node < pedigree.size(); ++node) {
    if (!pedigree.isGroup(node)) everybody.push_back(node);
  }
  const founder_contributions all = contributionsTo(pedigree, everybody);
  std::vector<std::size_t> places(all.founders.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(),
                   [&](std::size_t a, std::size_t b) { return all.shares[a] > all.shares[b]; });
  if (places.size() > MOST_LINEAGES) places.resize(MOST_LINEAGES);
  std::sort(places.begin(), places.end());
  std::vector<animal_number> founders;
  for (const std::size_t place : places) founders.push_back(all.founders[place]);
  return founders;
}

}  // namespace

void fillGenetics(AnimalData& store, const StudbookPedigree& pedigree, unsigned threads) {
  const relationship_terms terms = inbreedingOf(pedigree.pedigree(), threads);
  const generation_numbers generations = generationsOf(pedigree.pedigree());
  for (position record = 0; record < store.records.size(); ++record) {
    const animal_number number = pedigree.number(record);
    if (number == UNKNOWN_SOURCE) continue;
    master_data& animal = store.records[record];
    if (std::isnan(animal.fcoef)) animal.fcoef = terms.inbreeding[number];
    fillMissing(animal.generation[G_CITES], generations.cites[number]);
    fillMissing(animal.generation[G_GENETIC], generations.genetic[number]);
    fillMissing(animal.generation[G_MATERNAL], generations.maternal[number]);
    fillMissing(animal.generation[G_AVERAGE], generations.equivalent[number]);
  }
}

std::vector<position> markFounderLineages(AnimalData& store, const StudbookPedigree& pedigree) {
  const GeneticPedigree& numbers = pedigree.pedigree();
  const std::vector<animal_number> founders = tellableFounders(numbers);
  for (master_data& animal : store.records) animal.lineages.reset();
  std::vector<std::bitset<master_data::LINEAGES>> lineages(numbers.size());
  std::vector<position> records;
  for (std::size_t lineage = 0; lineage < founders.size(); ++lineage) {
    lineages[founders[lineage]].set(lineage);
    records.push_back(pedigree.record(founders[lineage]));
  }
  for (animal_number node = 0; node < numbers.size(); ++node) {
    numbers.forEachParent(node, [&](animal_number parent, double) { lineages[node] |= lineages[parent]; });
    if (!numbers.isGroup(node)) store.records[pedigree.record(node)].lineages = lineages[node];
  }
  return records;
}

}  // namespace spx
