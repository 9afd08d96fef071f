#include "spx/genetics/generations.h"

#include <algorithm>
#include <limits>

namespace spx {
namespace {

bool isKnown(const GeneticPedigree& pedigree, animal_number parent) {
  return pedigree.isNode(parent) || parent == WILD_SOURCE;
}

double valueOf(const GeneticPedigree& pedigree, const std::vector<double>& values, animal_number parent) {
  return pedigree.isNode(parent) ? values[parent] : 0;
}

class GenerationCounter {
 public:
  explicit GenerationCounter(const GeneticPedigree& pedigree) : pedigree_(pedigree) {
    for (std::vector<double>* numbers :
         {&found_.cites, &found_.genetic, &found_.maternal, &found_.equivalent, &found_.traced, &found_.maximum}) {
      numbers->resize(pedigree.size());
    }
  }

  generation_numbers count() {
    for (animal_number node = 0; node < pedigree_.size(); ++node) {
      if (pedigree_.isGroup(node)) {
        averageCandidates(node);
      } else if (!pedigree_.isFounder(node)) {
        countFrom(node, pedigree_.sire(node), pedigree_.dam(node));
      }
    }
    return std::move(found_);
  }

 private:
  void countFrom(animal_number animal, animal_number sire, animal_number dam) {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = 0;
    double sum = 0;
    double equivalent = 0;
    int known = 0;
    for (const animal_number parent : {sire, dam}) {
      if (!isKnown(pedigree_, parent)) continue;
      ++known;
      lowest = std::min(lowest, valueOf(pedigree_, found_.cites, parent));
      highest = std::max(highest, valueOf(pedigree_, found_.maximum, parent));
      sum += valueOf(pedigree_, found_.genetic, parent);
      equivalent += (valueOf(pedigree_, found_.equivalent, parent) + 1) / 2;
    }
    found_.cites[animal] = 1 + lowest;
    found_.genetic[animal] = 1 + sum / known;
    found_.equivalent[animal] = equivalent;
    found_.maximum[animal] = 1 + highest;
    if (isKnown(pedigree_, dam)) {
      found_.maternal[animal] = 1 + valueOf(pedigree_, found_.maternal, dam);
    }
    if (known == 2) {
      found_.traced[animal] =
          1 + std::min(valueOf(pedigree_, found_.traced, sire), valueOf(pedigree_, found_.traced, dam));
    }
  }

  /// Averages the candidates by their shares. `equivalent` becomes the sum of share x (candidate + 1), less 1:
  /// offspring add 1 for the step to a parent, which leaves nothing for a missing share.
  void averageCandidates(animal_number group) {
    double total = 0;
    double lowest = std::numeric_limits<double>::infinity();
    double traced = std::numeric_limits<double>::infinity();
    for (const auto& [candidate, share] : pedigree_.candidates(group)) {
      total += share;
      lowest = std::min(lowest, found_.cites[candidate]);
      traced = std::min(traced, found_.traced[candidate]);
      found_.genetic[group] += share * found_.genetic[candidate];
      found_.maternal[group] += share * found_.maternal[candidate];
      found_.equivalent[group] += share * (found_.equivalent[candidate] + 1);
      found_.maximum[group] = std::max(found_.maximum[group], found_.maximum[candidate]);
    }
    found_.equivalent[group] -= 1;
    if (total == 0) return;
    found_.cites[group] = lowest;
    found_.traced[group] = total < 1 - 1e-12 ? -1 : traced;
    found_.genetic[group] /= total;
    found_.maternal[group] /= total;
  }

  const GeneticPedigree& pedigree_;
  generation_numbers found_;
};

/// The share of ancestors known one generation further back, computed from the shares of the parents.
/// A group is not a generation of its own: it passes on the values of its candidates.
std::vector<double> oneGenerationBack(const GeneticPedigree& pedigree, const std::vector<double>& parents_known,
                                      bool is_first) {
  std::vector<double> known(pedigree.size());
  for (animal_number node = 0; node < pedigree.size(); ++node) {
    if (pedigree.isGroup(node)) continue;
    if (is_first && !pedigree.isFounder(node)) {
      for (const animal_number parent : {pedigree.sire(node), pedigree.dam(node)}) {
        if (parent == WILD_SOURCE) known[node] += 0.5;
      }
    }
    pedigree.forEachParent(node,
                           [&](animal_number parent, double share) { known[node] += share * parents_known[parent]; });
  }
  return known;
}

/// Sets the value of each group, which its offspring read as a parent's, to the mean of its candidates.
void fillGroups(const GeneticPedigree& pedigree, std::vector<double>& known) {
  for (animal_number node = 0; node < pedigree.size(); ++node) {
    if (!pedigree.isGroup(node)) continue;
    known[node] = 0;
    pedigree.forEachParent(node,
                           [&](animal_number candidate, double share) { known[node] += share * known[candidate]; });
  }
}

}  // namespace

generation_numbers generationsOf(const GeneticPedigree& pedigree) {
  return GenerationCounter(pedigree).count();
}

std::vector<std::vector<double>> completenessByGeneration(const GeneticPedigree& pedigree, std::size_t generations) {
  std::vector<std::vector<double>> by_generation;
  std::vector<double> known(pedigree.size(), 1.0);
  for (std::size_t generation = 0; generation < generations; ++generation) {
    fillGroups(pedigree, known);
    known = oneGenerationBack(pedigree, known, generation == 0);
    by_generation.push_back(known);
  }
  return by_generation;
}

std::vector<double> completenessIndex(const GeneticPedigree& pedigree, std::size_t generations) {
  std::vector<double> index(pedigree.size());
  if (generations == 0) return index;
  // By animal: the sum over the generations of the share of its ancestors that is known, the animal itself being
  // generation 0. As a parent it adds half of this to its side of the offspring's pedigree.
  std::vector<double> sums(pedigree.size(), 1.0);
  std::vector<double> known(pedigree.size(), 1.0);
  for (std::size_t generation = 1; generation < generations; ++generation) {
    fillGroups(pedigree, known);
    known = oneGenerationBack(pedigree, known, generation == 1);
    for (std::size_t node = 0; node < sums.size(); ++node) sums[node] += known[node];
  }
  fillGroups(pedigree, sums);
  const auto side = [&](animal_number parent) {
    const double sum = pedigree.isNode(parent) ? sums[parent] : parent == WILD_SOURCE ? 1.0 : 0.0;
    return sum / 2 / static_cast<double>(generations);
  };
  for (animal_number node = 0; node < pedigree.size(); ++node) {
    if (pedigree.isGroup(node) || pedigree.isFounder(node)) continue;
    const double paternal = side(pedigree.sire(node));
    const double maternal = side(pedigree.dam(node));
    if (paternal > 0 && maternal > 0) {
      index[node] = 4 * paternal * maternal / (paternal + maternal);
    }
  }
  return index;
}

}  // namespace spx
