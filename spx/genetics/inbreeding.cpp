#include "spx/genetics/inbreeding.h"

#include <algorithm>

#include "spx/genetics/ancestor_sweep.h"
#include "spx/genetics/parallel.h"

namespace spx {
namespace {

constexpr std::size_t LANES = RelationshipSweep::LANES;
/// Below this number of sweeps starting a thread does not pay.
constexpr std::size_t SWEEPS_PER_THREAD = 8;

/// Offspring of two nodes, listed by the parent whose row of A serves all of them.
class Matings {
 public:
  explicit Matings(const GeneticPedigree& pedigree)
      : pedigree_(pedigree), by_sire_(fewerSires(pedigree)), begins_(pedigree.size() + 1) {
    const auto nodes = static_cast<animal_number>(pedigree.size());
    for (animal_number animal = 0; animal < nodes; ++animal) {
      if (hasBothParents(animal)) ++begins_[pivot(animal) + 1];
    }
    for (std::size_t node = 0; node < nodes; ++node) begins_[node + 1] += begins_[node];
    offspring_.resize(begins_.back());
    std::vector<animal_number> next(begins_.begin(), begins_.end() - 1);
    for (animal_number animal = 0; animal < nodes; ++animal) {
      if (hasBothParents(animal)) offspring_[next[pivot(animal)]++] = animal;
    }
  }

  std::span<const animal_number> offspring(animal_number pivot) const {
    return {offspring_.data() + begins_[pivot], begins_[pivot + 1] - begins_[pivot]};
  }
  animal_number mate(animal_number offspring) const {
    return by_sire_ ? pedigree_.dam(offspring) : pedigree_.sire(offspring);
  }

 private:
  bool hasBothParents(animal_number animal) const {
    return pedigree_.isNode(pedigree_.sire(animal)) && pedigree_.isNode(pedigree_.dam(animal));
  }
  animal_number pivot(animal_number offspring) const {
    return by_sire_ ? pedigree_.sire(offspring) : pedigree_.dam(offspring);
  }

  static bool fewerSires(const GeneticPedigree& pedigree) {
    std::vector<bool> is_sire(pedigree.size());
    std::vector<bool> is_dam(pedigree.size());
    for (animal_number animal = 0; animal < pedigree.size(); ++animal) {
      const animal_number sire = pedigree.sire(animal);
      const animal_number dam = pedigree.dam(animal);
      if (!pedigree.isNode(sire) || !pedigree.isNode(dam)) continue;
      is_sire[sire] = true;
      is_dam[dam] = true;
    }
    return std::count(is_sire.begin(), is_sire.end(), true) <= std::count(is_dam.begin(), is_dam.end(), true);
  }

  const GeneticPedigree& pedigree_;
  bool by_sire_;
  std::vector<animal_number> begins_;
  std::vector<animal_number> offspring_;
};

/// Works through the levels of the pedigree. The offspring of a sire have higher levels than he, and
/// his row of A needs the variances of his ancestors alone: they are known by then.
class InbreedingRun {
 public:
  InbreedingRun(const GeneticPedigree& pedigree, std::span<const double> shares, unsigned threads)
      : pedigree_(pedigree),
        shares_(shares),
        threads_(std::max(1U, threads)),
        matings_(pedigree),
        terms_{std::vector<double>(pedigree.size()), std::vector<double>(pedigree.size())} {
    workers_.reserve(threads_);
    for (std::size_t worker = 0; worker < threads_; ++worker) workers_.emplace_back(pedigree);
  }

  relationship_terms run() {
    const std::vector<animal_number>& levels = pedigree_.levels();
    for (std::size_t level = 0; level + 1 < levels.size(); ++level) {
      for (animal_number node = levels[level]; node < levels[level + 1]; ++node) setSampling(node);
      sweepLevel(levels[level], levels[level + 1]);
    }
    return std::move(terms_);
  }

 private:
  struct Worker {
    explicit Worker(const GeneticPedigree& pedigree) : packed(pedigree) {}
    PackedAncestors packed;
    RelationshipSweep rows;
  };

  double share(animal_number node) const { return shares_.empty() ? 1.0 : shares_[node]; }

  /// D = A_ii less what the parents explain of it.
  void setSampling(animal_number node) {
    if (pedigree_.isGroup(node)) return;
    double variance = share(node);
    pedigree_.forEachParent(
        node, [&](animal_number parent, double) { variance -= (share(parent) + terms_.inbreeding[parent]) / 4; });
    terms_.sampling[node] = variance;
  }

  void sweepLevel(animal_number first, animal_number last) {
    std::vector<animal_number> pivots;
    for (animal_number node = first; node < last; ++node) {
      if (!matings_.offspring(node).empty() || pedigree_.isGroup(node)) pivots.push_back(node);
    }
    const std::size_t sweeps = (pivots.size() + LANES - 1) / LANES;
    const std::size_t workers = std::min<std::size_t>(threads_, sweeps / SWEEPS_PER_THREAD);
    forEachTask(sweeps, workers, [&](std::size_t worker, std::size_t task) {
      const std::size_t begin = task * LANES;
      sweep(workers_[worker], std::span(pivots).subspan(begin, std::min(LANES, pivots.size() - begin)));
    });
  }

  void sweep(Worker& worker, std::span<const animal_number> pivots) {
    auto& [packed, rows] = worker;
    for (const animal_number pivot : pivots) {
      packed.add(pivot);
      for (const animal_number child : matings_.offspring(pivot)) packed.add(matings_.mate(child));
    }
    packed.pack();
    rows.start(packed);
    for (std::size_t lane = 0; lane < pivots.size(); ++lane) rows.add(packed.slot(pivots[lane]), lane, 1.0);
    rows.spread(packed, terms_.sampling);
    for (std::size_t lane = 0; lane < pivots.size(); ++lane) {
      const animal_number pivot = pivots[lane];
      for (const animal_number child : matings_.offspring(pivot)) {
        terms_.inbreeding[child] = rows.at(packed.slot(matings_.mate(child)))[lane] / 2;
      }
      if (pedigree_.isGroup(pivot)) {
        terms_.inbreeding[pivot] = rows.at(packed.slot(pivot))[lane] - share(pivot);
      }
    }
  }

  const GeneticPedigree& pedigree_;
  std::span<const double> shares_;  ///< empty: all sources
  unsigned threads_;
  Matings matings_;
  relationship_terms terms_;
  std::vector<Worker> workers_;
};

}  // namespace

relationship_terms inbreedingOf(const GeneticPedigree& pedigree, unsigned threads) {
  return InbreedingRun(pedigree, {}, threads).run();
}

relationship_terms inbreedingBySources(const GeneticPedigree& pedigree, std::span<const double> shares,
                                       unsigned threads) {
  return InbreedingRun(pedigree, shares, threads).run();
}

std::vector<double> ancestralInbreeding(const GeneticPedigree& pedigree, std::span<const double> inbreeding) {
  std::vector<double> ancestral(pedigree.size());
  for (animal_number node = 0; node < pedigree.size(); ++node) {
    pedigree.forEachParent(node, [&](animal_number parent, double share) {
      const double former = ancestral[parent];
      // A group averages its candidates; its own value of F is not an inbreeding coefficient.
      const double passed = pedigree.isGroup(parent) ? former : former + (1 - former) * inbreeding[parent];
      ancestral[node] += share * passed;
    });
  }
  return ancestral;
}

}  // namespace spx
