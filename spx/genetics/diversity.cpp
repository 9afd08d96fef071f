#include "spx/genetics/diversity.h"

#include <algorithm>
#include <limits>

#include "spx/genetics/founders.h"
#include "spx/genetics/kinship.h"

namespace spx {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

double sumOver(std::span<const animal_number> set, std::span<const double> values) {
  double sum = 0;
  for (const animal_number animal : set) sum += values[animal];
  return sum;
}

}  // namespace

genetic_diversity diversityOf(const GeneticPedigree& pedigree, const relationship_terms& terms,
                              std::span<const animal_number> set) {
  genetic_diversity found;
  const auto animals = static_cast<double>(set.size());
  const founder_contributions sources = contributionsTo(pedigree, set);
  found.animals = set.size();
  found.founders = sources.founders.size();
  found.phantom_founders = sources.phantoms.size();
  found.known_share = sumOver(set, knownShares(pedigree)) / animals;
  found.mean_inbreeding = sumOver(set, terms.inbreeding) / animals;
  found.highest_inbreeding = set.empty() ? NOT_A_NUMBER : 0;
  for (const animal_number animal : set) {
    found.highest_inbreeding = std::max(found.highest_inbreeding, terms.inbreeding[animal]);
  }
  found.mean_kinship = meanKinshipBetween(pedigree, terms, set, set);
  found.gene_diversity = 1 - found.mean_kinship;
  found.observed_heterozygosity = 1 - found.mean_inbreeding;
  found.founder_diversity = 1 - 1 / (2 * static_cast<double>(found.founders + found.phantom_founders));
  found.founder_genomes = 1 / (2 * found.mean_kinship);
  found.effective_founders = effectiveFounders(sources);
  found.effective_known_founders = effectiveKnownFounders(pedigree, sources);
  return found;
}

known_kinships knownKinships(const GeneticPedigree& pedigree, std::span<const animal_number> set, unsigned threads) {
  const std::vector<double> known = knownShares(pedigree);
  const relationship_terms terms = inbreedingBySources(pedigree, known, threads);
  std::vector<double> x(pedigree.size());
  for (const animal_number animal : set) x[animal] += 0.5;
  const double total = sumOver(set, known);
  known_kinships found{relationshipProduct(pedigree, terms, std::move(x)), NOT_A_NUMBER};
  if (total > 0) found.mean = sumOver(set, found.of_animals) / (total * total);
  for (std::size_t node = 0; node < known.size(); ++node) {
    const double weight = known[node] * total;
    found.of_animals[node] = weight > 0 ? found.of_animals[node] / weight : NOT_A_NUMBER;
  }
  return found;
}

std::vector<double> knownInbreeding(const GeneticPedigree& pedigree, unsigned threads) {
  const std::vector<double> known = knownShares(pedigree);
  std::vector<double> inbreeding = inbreedingBySources(pedigree, known, threads).inbreeding;
  const auto shareOf = [&](animal_number parent) {
    return pedigree.isNode(parent) ? known[parent] : parent == WILD_SOURCE ? 1.0 : 0.0;
  };
  for (animal_number animal = 0; animal < pedigree.size(); ++animal) {
    if (pedigree.isFounder(animal) || pedigree.isGroup(animal)) continue;
    const double both = shareOf(pedigree.sire(animal)) * shareOf(pedigree.dam(animal));
    inbreeding[animal] = both > 0 ? inbreeding[animal] / both : NOT_A_NUMBER;
  }
  return inbreeding;
}

}  // namespace spx
