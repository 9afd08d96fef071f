#include "spx/genetics/effective_ancestors.h"

#include <algorithm>
#include <queue>

#include "spx/genetics/founders.h"
#include "spx/genetics/node_queue.h"

namespace spx {
namespace {

/// The children of every node, a group's being those of its candidates.
class Children {
 public:
  explicit Children(const GeneticPedigree& pedigree) : begins_(pedigree.size() + 1) {
    const auto nodes = static_cast<animal_number>(pedigree.size());
    for (animal_number node = 0; node < nodes; ++node) {
      pedigree.forEachParent(node, [&](animal_number parent, double) { ++begins_[parent + 1]; });
    }
    for (std::size_t node = 0; node < nodes; ++node) begins_[node + 1] += begins_[node];
    children_.resize(begins_.back());
    std::vector<std::size_t> next(begins_.begin(), begins_.end() - 1);
    for (animal_number node = 0; node < nodes; ++node) {
      pedigree.forEachParent(node, [&](animal_number parent, double share) {
        children_[next[parent]++] = {node, share};
      });
    }
  }

  std::span<const possible_parent> of(animal_number node) const {
    return {children_.data() + begins_[node], begins_[node + 1] - begins_[node]};
  }

 private:
  std::vector<std::size_t> begins_;
  std::vector<possible_parent> children_;  ///< a child, and the share of its genes
};

/// By node: the length of its longest line of ancestors.
std::vector<std::uint32_t> levelsOf(const GeneticPedigree& pedigree) {
  std::vector<std::uint32_t> levels;
  for (std::uint32_t level = 0; levels.size() < pedigree.size(); ++level) {
    levels.resize(pedigree.levels()[level + 1], level);
  }
  return levels;
}

/// Marginal contributions only shrink: an ancestor that is chosen takes from its own ancestors and
/// explains its descendants. So a candidate is recomputed only when it reaches the head of the queue.
class AncestorSearch {
 public:
  /// @param explained  by node: the share of its genes that counts as explained from the start
  AncestorSearch(const GeneticPedigree& pedigree, const std::vector<phantom_founder>& phantoms,
                 std::vector<double> weights, std::vector<double> explained, const std::vector<bool>& is_barred)
      : pedigree_(pedigree),
        children_(pedigree),
        phantoms_(phantoms),
        weights_(std::move(weights)),
        explained_(std::move(explained)),
        change_(pedigree.size()),
        is_chosen_(pedigree.size()),
        levels_(levelsOf(pedigree)),
        waiting_(pedigree.size()) {
    for (animal_number node = 0; node < pedigree.size(); ++node) {
      if (!pedigree.isGroup(node) && !is_barred[node]) push({node, 0});
    }
    phantom_weights_.reserve(phantoms_.size());
    for (std::size_t phantom = 0; phantom < phantoms_.size(); ++phantom) {
      const phantom_founder& missing = phantoms_[phantom];
      phantom_weights_.push_back(missing.share / weights_[missing.offspring]);
      push({missing.offspring, phantom + 1});
    }
  }

  effective_ancestors search(std::size_t most) {
    effective_ancestors found;
    double squares = 0;
    while (found.ancestors.size() < most) {
      const std::vector<candidate> oldest = oldestOfTheLargest();
      if (oldest.empty()) break;
      for (const candidate who : oldest) {
        if (found.ancestors.size() == most) break;
        const double share = marginal(who);
        found.ancestors.push_back({who.node, who.phantom != 0, share});
        found.explained += share;
        squares += share * share;
        choose(who);
      }
    }
    found.number = squares == 0 ? std::numeric_limits<double>::quiet_NaN() : 1 / squares;
    return found;
  }

 private:
  /// Smaller shares are rounding errors, not contributions.
  static constexpr double LEAST_SHARE = 1e-13;
  /// Shares whose relative difference is smaller than this count as equal.
  static constexpr double ROUNDING = 1e-9;

  struct candidate {
    animal_number node;
    std::size_t phantom;  ///< counted from 1; 0 is the node itself
    bool operator>(const candidate& other) const {
      return node != other.node ? node > other.node : phantom > other.phantom;
    }
  };
  struct entry {
    double share;
    candidate who;
    bool operator<(const entry& other) const { return share != other.share ? share < other.share : who > other.who; }
  };

  double marginal(candidate who) const {
    if (is_chosen_[who.node]) return 0;
    if (who.phantom != 0) return weights_[who.node] * phantom_weights_[who.phantom - 1];
    return weights_[who.node] * (1 - explained_[who.node]);
  }

  void push(candidate who) {
    const double share = marginal(who);
    if (share > LEAST_SHARE) queue_.push({share, who});
  }

  /// The level of a candidate; a phantom is a founder, whatever the level of its offspring.
  std::uint32_t levelOf(candidate who) const { return who.phantom != 0 ? 0 : levels_[who.node]; }

  /// Of the candidates with the largest current share, those of the lowest level. Animals of one level do not
  /// descend from each other, so choosing one of them does not change the shares of the others.
  std::vector<candidate> oldestOfTheLargest() {
    std::vector<candidate> equal;
    double least = 0;
    while (!queue_.empty() && queue_.top().share >= least) {
      const auto [key, who] = queue_.top();
      queue_.pop();
      const double share = marginal(who);
      if (share < key) {
        push(who);
        continue;
      }
      if (equal.empty()) least = share * (1 - ROUNDING);
      equal.push_back(who);
    }
    if (equal.empty()) return equal;
    const auto isOlder = [this](candidate a, candidate b) { return levelOf(a) < levelOf(b); };
    const std::uint32_t lowest = levelOf(*std::min_element(equal.begin(), equal.end(), isOlder));
    const auto younger =
        std::stable_partition(equal.begin(), equal.end(), [&](candidate who) { return levelOf(who) == lowest; });
    std::for_each(younger, equal.end(), [this](candidate who) { push(who); });
    equal.erase(younger, equal.end());
    return equal;
  }

  void choose(candidate who) {
    if (who.phantom != 0) {
      explain(who.node, phantom_weights_[who.phantom - 1]);
      return;
    }
    is_chosen_[who.node] = true;
    cutParents(who.node);
    explain(who.node, 1 - explained_[who.node]);
  }

  void cutParents(animal_number chosen) {
    const auto takeFromParents = [this](animal_number node, double weight) {
      pedigree_.forEachParent(node, [&](animal_number parent, double share) {
        change_[parent] += share * weight;
        waiting_.add(parent);
      });
    };
    takeFromParents(chosen, weights_[chosen]);
    waiting_.drainDown([&](animal_number node) {
      const double weight = change_[node];
      change_[node] = 0;
      weights_[node] -= weight;
      if (!is_chosen_[node]) takeFromParents(node, weight);
    });
  }

  void explain(animal_number node, double share) {
    change_[node] = share;
    waiting_.add(node);
    waiting_.drainUp([&](animal_number reached) {
      const double more = change_[reached];
      change_[reached] = 0;
      explained_[reached] += more;
      for (const auto& [child, part] : children_.of(reached)) {
        if (is_chosen_[child]) continue;
        change_[child] += part * more;
        waiting_.add(child);
      }
    });
  }

  const GeneticPedigree& pedigree_;
  Children children_;
  const std::vector<phantom_founder>& phantoms_;
  std::vector<double> phantom_weights_;  ///< the share of the offspring's genes
  std::vector<double> weights_;          ///< contributions without what chosen ancestors cut off
  std::vector<double> explained_;        ///< the share of an animal's genes from chosen ancestors
  std::vector<double> change_;
  std::vector<bool> is_chosen_;
  std::vector<std::uint32_t> levels_;
  NodeQueue waiting_;
  std::priority_queue<entry> queue_;
};

std::vector<double> weightsIn(const GeneticPedigree& pedigree, std::span<const animal_number> set) {
  std::vector<double> weights(pedigree.size());
  for (const animal_number animal : set) weights[animal] += 1.0 / static_cast<double>(set.size());
  for (auto node = static_cast<animal_number>(pedigree.size()); node-- > 0;) {
    pedigree.forEachParent(node, [&](animal_number parent, double share) { weights[parent] += share * weights[node]; });
  }
  return weights;
}

}  // namespace

effective_ancestors effectiveAncestors(const GeneticPedigree& pedigree, std::span<const animal_number> set,
                                       const ancestor_options& options) {
  const GeneticPedigree part = pedigree.ancestorsOf(set);
  std::vector<animal_number> members;
  for (const animal_number animal : set) members.push_back(part.number(animal));
  std::vector<bool> is_barred(part.size());
  if (!options.members_count) {
    for (const animal_number member : members) is_barred[member] = !part.isFounder(member);
  }
  std::vector<phantom_founder> phantoms = contributionsTo(part, members).phantoms;
  std::vector<double> explained(part.size());
  if (options.known_only) {
    phantoms.erase(
        std::remove_if(phantoms.begin(), phantoms.end(), [](const auto& phantom) { return !phantom.is_known; }),
        phantoms.end());
    explained = knownShares(part);
    for (double& share : explained) share = 1 - share;
  }
  effective_ancestors found =
      AncestorSearch(part, phantoms, weightsIn(part, members), std::move(explained), is_barred).search(options.most);
  if (options.known_only) found.number *= found.explained * found.explained;
  for (ancestor_share& ancestor : found.ancestors) {
    ancestor.animal = static_cast<animal_number>(part.row(ancestor.animal));
  }
  return found;
}

}  // namespace spx
