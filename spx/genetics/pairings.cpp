#include "spx/genetics/pairings.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "spx/genetics/founders.h"
#include "spx/genetics/kinship.h"

namespace spx {
namespace {

/// A population to which offspring are added: its size, the sum of all its kinships, and the sum of
/// every animal's kinships with it.
class GrowingPopulation {
 public:
  GrowingPopulation(const GeneticPedigree& pedigree, const relationship_terms& terms,
                    std::span<const animal_number> animals)
      : pedigree_(pedigree),
        terms_(terms),
        size_(static_cast<double>(animals.size())),
        sums_(meanKinships(pedigree, terms, animals)) {
    for (double& sum : sums_) sum *= size_;
    for (const animal_number animal : animals) total_ += sums_[animal];
  }

  double meanKinshipOf(animal_number animal) const { return sums_[animal] / size_; }
  double diversity() const { return 1 - total_ / (size_ * size_); }

  double diversityWith(animal_number sire, animal_number dam, double kinship) const {
    const double larger = size_ + 1;
    return 1 - totalWith(sire, dam, kinship) / (larger * larger);
  }

  void addOffspring(animal_number sire, animal_number dam, double kinship) {
    total_ = totalWith(sire, dam, kinship);
    ++size_;
    std::vector<double> x(pedigree_.size());
    x[sire] += 0.25;
    x[dam] += 0.25;
    const std::vector<double> with_offspring = relationshipProduct(pedigree_, terms_, std::move(x));
    for (std::size_t node = 0; node < sums_.size(); ++node) sums_[node] += with_offspring[node];
  }

 private:
  double totalWith(animal_number sire, animal_number dam, double kinship) const {
    return total_ + sums_[sire] + sums_[dam] + (1 + kinship) / 2;
  }

  const GeneticPedigree& pedigree_;
  const relationship_terms& terms_;
  double size_;
  std::vector<double> sums_;
  double total_ = 0;
};

class PairPicker {
 public:
  PairPicker(const GeneticPedigree& pedigree, const relationship_terms& terms,
             std::span<const animal_number> population, std::span<const animal_number> males,
             std::span<const animal_number> females, unsigned threads)
      : males_(males),
        females_(females),
        start_(pedigree, terms, population),
        now_(start_),
        known_(knownShares(pedigree)),
        kinships_(kinshipBlock(pedigree, terms, males, females, threads)) {}

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
      now_.addOffspring(pair.sire, pair.dam, pair.offspring_inbreeding);
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
            kinship,
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

  // A static ranking would name the same pair for ever; a dynamic one may want it twice.
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
        const double kinship = kinshipOf(male, female);
        if (kinship > options.most_kinship || isTaken(male, female)) continue;
        if (options.may_pair && !options.may_pair(males_[male], females_[female])) continue;
        const double diversity = judge.diversityWith(males_[male], females_[female], kinship);
        if (best && diversity <= highest) continue;
        best = places{male, female};
        highest = diversity;
      }
    }
    return best;
  }

  std::span<const animal_number> males_;
  std::span<const animal_number> females_;
  GrowingPopulation start_;
  GrowingPopulation now_;
  std::vector<double> known_;
  std::vector<double> kinships_;
  std::vector<std::size_t> is_picked_;
};

}  // namespace

std::vector<breeding_pair> rankPairs(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                     std::span<const animal_number> population, std::span<const animal_number> males,
                                     std::span<const animal_number> females, unsigned threads) {
  std::vector<breeding_pair> pairs;
  if (population.empty()) return pairs;
  const PairPicker picker(pedigree, terms, population, males, females, threads);
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
  return PairPicker(pedigree, terms, population, males, females, options.threads).pick(options);
}

}  // namespace spx
