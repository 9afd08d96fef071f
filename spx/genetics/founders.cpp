#include "spx/genetics/founders.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

namespace spx {
namespace {

/// The part of an animal's genes from that parent that no node accounts for.
double missingShare(const GeneticPedigree& pedigree, animal_number parent) {
  if (!pedigree.isNode(parent)) return 0.5;
  if (!pedigree.isGroup(parent)) return 0;
  double missing = 1;
  for (const possible_parent& candidate : pedigree.candidates(parent)) missing -= candidate.share;
  constexpr double ROUNDING = 1e-12;
  return missing > ROUNDING ? missing / 2 : 0;
}

void addPhantoms(const GeneticPedigree& pedigree, animal_number animal, double share,
                 std::vector<phantom_founder>& phantoms) {
  for (const bool is_sire : {true, false}) {
    const animal_number parent = is_sire ? pedigree.sire(animal) : pedigree.dam(animal);
    const double missing = missingShare(pedigree, parent);
    if (missing > 0) phantoms.push_back({animal, is_sire, parent == WILD_SOURCE, share * missing});
  }
}

}  // namespace

founder_contributions contributionsTo(const GeneticPedigree& pedigree, std::span<const animal_number> set) {
  std::vector<double> weights(pedigree.size());
  for (const animal_number animal : set) weights[animal] += 1.0 / static_cast<double>(set.size());
  founder_contributions found;
  for (auto node = static_cast<animal_number>(pedigree.size()); node-- > 0;) {
    const double weight = weights[node];
    if (weight == 0) continue;
    if (pedigree.isFounder(node)) {
      found.founders.push_back(node);
      found.shares.push_back(weight);
      continue;
    }
    pedigree.forEachParent(node, [&](animal_number parent, double share) { weights[parent] += share * weight; });
    if (!pedigree.isGroup(node)) addPhantoms(pedigree, node, weight, found.phantoms);
  }
  std::reverse(found.founders.begin(), found.founders.end());
  std::reverse(found.shares.begin(), found.shares.end());
  std::reverse(found.phantoms.begin(), found.phantoms.end());
  return found;
}

double effectiveFounders(const founder_contributions& contributions) {
  double squares = 0;
  for (const double share : contributions.shares) squares += share * share;
  for (const phantom_founder& phantom : contributions.phantoms) {
    squares += phantom.share * phantom.share;
  }
  return squares == 0 ? std::numeric_limits<double>::quiet_NaN() : 1 / squares;
}

double effectiveKnownFounders(const GeneticPedigree& pedigree, const founder_contributions& contributions) {
  double sum = 0;
  double squares = 0;
  const auto add = [&](double share) {
    sum += share;
    squares += share * share;
  };
  for (std::size_t founder = 0; founder < contributions.founders.size(); ++founder) {
    if (pedigree.isOfKnownOrigin(contributions.founders[founder])) {
      add(contributions.shares[founder]);
    }
  }
  for (const phantom_founder& phantom : contributions.phantoms) {
    if (phantom.is_known) add(phantom.share);
  }
  return squares == 0 ? std::numeric_limits<double>::quiet_NaN() : sum * sum / squares;
}

std::vector<double> founderShares(const GeneticPedigree& pedigree, animal_number founder) {
  std::vector<double> shares(pedigree.size());
  shares[founder] = 1;
  for (animal_number node = founder + 1; node < pedigree.size(); ++node) {
    pedigree.forEachParent(node, [&](animal_number parent, double share) { shares[node] += share * shares[parent]; });
  }
  return shares;
}

std::vector<double> knownShares(const GeneticPedigree& pedigree) {
  std::vector<double> known(pedigree.size());
  for (animal_number node = 0; node < pedigree.size(); ++node) {
    if (pedigree.isFounder(node)) {
      known[node] = pedigree.isOfKnownOrigin(node) ? 1 : 0;
      continue;
    }
    if (pedigree.sire(node) == WILD_SOURCE) known[node] += 0.5;
    if (pedigree.dam(node) == WILD_SOURCE) known[node] += 0.5;
    pedigree.forEachParent(node, [&](animal_number parent, double share) { known[node] += share * known[parent]; });
  }
  return known;
}

std::vector<std::size_t> descendantsInSet(const GeneticPedigree& pedigree, std::span<const animal_number> ancestors,
                                          std::span<const animal_number> set) {
  constexpr std::size_t AT_ONCE = 64;
  std::vector<std::size_t> counts(ancestors.size());
  std::vector<std::uint64_t> from(pedigree.size());
  for (std::size_t first = 0; first < ancestors.size(); first += AT_ONCE) {
    const std::size_t batch = std::min(AT_ONCE, ancestors.size() - first);
    std::fill(from.begin(), from.end(), 0);
    for (std::size_t bit = 0; bit < batch; ++bit) {
      from[ancestors[first + bit]] |= std::uint64_t{1} << bit;
    }
    for (animal_number node = 0; node < pedigree.size(); ++node) {
      pedigree.forEachParent(node, [&](animal_number parent, double) { from[node] |= from[parent]; });
    }
    for (const animal_number animal : set) {
      for (std::uint64_t rest = from[animal]; rest != 0; rest &= rest - 1) {
        const auto bit = static_cast<std::size_t>(std::countr_zero(rest));
        if (ancestors[first + bit] != animal) ++counts[first + bit];
      }
    }
  }
  return counts;
}

}  // namespace spx
