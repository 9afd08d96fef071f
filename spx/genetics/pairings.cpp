#include "spx/genetics/pairings.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "spx/genetics/founders.h"
#include "spx/genetics/kinship.h"

namespace spx {
namespace {

/// A population to which offspring are added: its size, the sum of all its kinships, and the sum of
/// every animal's kinships with it. When only part of the genes counts, the size of an animal is its
/// share of these genes.
class GrowingPopulation {
 public:
  GrowingPopulation(const GeneticPedigree& pedigree, const relationship_terms& terms,
                    std::span<const animal_number> animals, std::span<const double> parts)
      : pedigree_(pedigree), terms_(terms), parts_(parts), sums_(meanKinships(pedigree, terms, animals)) {
    for (double& sum : sums_) sum *= static_cast<double>(animals.size());
    for (const animal_number animal : animals) {
      total_ += sums_[animal];
      size_ += partOf(animal);
    }
  }

  double partOf(animal_number animal) const { return parts_.empty() ? 1 : parts_[animal]; }
  double meanKinshipOf(animal_number animal) const { return sums_[animal] / (size_ * partOf(animal)); }
  double diversity() const { return 1 - total_ / (size_ * size_); }

  double diversityWith(animal_number sire, animal_number dam, double kinship) const {
    const double larger = size_ + partOfOffspring(sire, dam);
    return 1 - totalWith(sire, dam, kinship) / (larger * larger);
  }

  void addOffspring(animal_number sire, animal_number dam, double kinship) {
    total_ = totalWith(sire, dam, kinship);
    size_ += partOfOffspring(sire, dam);
    std::vector<double> x(pedigree_.size());
    x[sire] += 0.25;
    x[dam] += 0.25;
    const std::vector<double> with_offspring = relationshipProduct(pedigree_, terms_, std::move(x));
    for (std::size_t node = 0; node < sums_.size(); ++node) sums_[node] += with_offspring[node];
  }

 private:
  double partOfOffspring(animal_number sire, animal_number dam) const { return (partOf(sire) + partOf(dam)) / 2; }

  double totalWith(animal_number sire, animal_number dam, double kinship) const {
    return total_ + sums_[sire] + sums_[dam] + (partOfOffspring(sire, dam) + kinship) / 2;
  }

  const GeneticPedigree& pedigree_;
  const relationship_terms& terms_;
  std::span<const double> parts_;
  double size_ = 0;
  std::vector<double> sums_;
  double total_ = 0;
};

/// The terms from which the population and the kinships are computed.
struct Basis {
  Basis(const GeneticPedigree& of_pedigree, const relationship_terms& of_all, GENES genes, unsigned threads)
      : pedigree(of_pedigree), known(knownShares(of_pedigree)), is_known(genes == GENES::KNOWN) {
    if (is_known) own_terms = inbreedingBySources(pedigree, known, threads);
    terms = is_known ? &own_terms : &of_all;
  }
  Basis(const Basis&) = delete;
  Basis& operator=(const Basis&) = delete;

  const GeneticPedigree& pedigree;
  std::vector<double> known;  ///< by node
  bool is_known;
  relationship_terms own_terms;
  const relationship_terms* terms;
};

class PairPicker {
 public:
  PairPicker(const Basis& basis, std::span<const animal_number> population, std::span<const animal_number> males,
             std::span<const animal_number> females, unsigned threads)
      : males_(males),
        females_(females),
        known_(basis.known),
        start_(basis.pedigree, *basis.terms, population, basis.is_known ? known_ : std::span<const double>()),
        now_(start_),
        kinships_(kinshipBlock(basis.pedigree, *basis.terms, males, females, threads)) {}

  std::vector<picked_pair> pick(const pick_options& options) {
    std::vector<std::size_t> left_of_male(males_.size(), options.most_per_male);
    std::vector<std::size_t> left_of_female(females_.size(), options.most_per_female);
    const GrowingPopulation& judge = options.is_dynamic ? now_ : start_;
    std::vector<picked_pair> picks;
    while (picks.size() < options.pairs) {
      const auto best = bestPair(judge, left_of_male, left_of_female, options);
      if (!best) break;
      const auto [male, female] = *best;
      const breeding_pair pair = pairOf(judge, male, female);
      now_.addOffspring(pair.sire, pair.dam, kinshipOf(male, female));
      picks.push_back({pair, now_.diversity()});
      --left_of_male[male];
      --left_of_female[female];
      if (!options.is_dynamic) is_picked_.push_back(male * females_.size() + female);
    }
    return picks;
  }

  breeding_pair pairOf(const GrowingPopulation& judge, std::size_t male, std::size_t female) const {
    const animal_number sire = males_[male];
    const animal_number dam = females_[female];
    const double kinship = kinshipOf(male, female);
    const double of_sire = judge.meanKinshipOf(sire);
    const double of_dam = judge.meanKinshipOf(dam);
    return {sire,
            dam,
            inbreedingOf(male, female),
            (of_sire + of_dam) / 2,
            std::abs(of_sire - of_dam),
            1 - (known_[sire] + known_[dam]) / 2,
            judge.diversityWith(sire, dam, kinship) - judge.diversity()};
  }
  const GrowingPopulation& start() const { return start_; }

 private:
  struct places {
    std::size_t male;
    std::size_t female;
  };

  double kinshipOf(std::size_t male, std::size_t female) const { return kinships_[male * females_.size() + female]; }

  // Over the genes that count.
  double inbreedingOf(std::size_t male, std::size_t female) const {
    const double both = start_.partOf(males_[male]) * start_.partOf(females_[female]);
    return both > 0 ? kinshipOf(male, female) / both : std::numeric_limits<double>::quiet_NaN();
  }

  // Without this test a static ranking would pick the same pair every time, and a dynamic one could pick it twice.
  bool isTaken(std::size_t male, std::size_t female) const {
    const std::size_t pair = male * females_.size() + female;
    return std::find(is_picked_.begin(), is_picked_.end(), pair) != is_picked_.end();
  }

  std::optional<places> bestPair(const GrowingPopulation& judge, const std::vector<std::size_t>& left_of_male,
                                 const std::vector<std::size_t>& left_of_female, const pick_options& options) const {
    std::optional<places> best;
    double highest = 0;
    for (std::size_t male = 0; male < males_.size(); ++male) {
      if (left_of_male[male] == 0) continue;
      for (std::size_t female = 0; female < females_.size(); ++female) {
        if (left_of_female[female] == 0 || males_[male] == females_[female]) continue;
        if (inbreedingOf(male, female) > options.most_kinship || isTaken(male, female)) continue;
        if (options.may_pair && !options.may_pair(males_[male], females_[female])) continue;
        const double diversity = judge.diversityWith(males_[male], females_[female], kinshipOf(male, female));
        if (best && diversity <= highest) continue;
        best = places{male, female};
        highest = diversity;
      }
    }
    return best;
  }

  std::span<const animal_number> males_;
  std::span<const animal_number> females_;
  std::span<const double> known_;
  GrowingPopulation start_;
  GrowingPopulation now_;
  std::vector<double> kinships_;
  std::vector<std::size_t> is_picked_;
};

}  // namespace

std::vector<breeding_pair> rankPairs(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                     std::span<const animal_number> population, std::span<const animal_number> males,
                                     std::span<const animal_number> females, unsigned threads, GENES genes) {
  std::vector<breeding_pair> pairs;
  if (population.empty()) return pairs;
  const Basis basis(pedigree, terms, genes, threads);
  const PairPicker picker(basis, population, males, females, threads);
  for (std::size_t male = 0; male < males.size(); ++male) {
    for (std::size_t female = 0; female < females.size(); ++female) {
      if (males[male] == females[female]) continue;
      pairs.push_back(picker.pairOf(picker.start(), male, female));
    }
  }
  std::stable_sort(pairs.begin(), pairs.end(), [](const breeding_pair& a, const breeding_pair& b) {
    return a.diversity_change > b.diversity_change;
  });
  return pairs;
}

std::vector<picked_pair> pickPairs(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                   std::span<const animal_number> population, std::span<const animal_number> males,
                                   std::span<const animal_number> females, const pick_options& options) {
  if (population.empty()) return {};
  const Basis basis(pedigree, terms, options.genes, options.threads);
  return PairPicker(basis, population, males, females, options.threads).pick(options);
}

}  // namespace spx
