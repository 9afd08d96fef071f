#include "spx/genetics/genetic_pedigree.h"

#include <algorithm>

namespace spx {
namespace {

constexpr std::uint32_t NOT_VISITED = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t ON_PATH = NOT_VISITED - 1;

/// Gives every row and group its level: 0 without parents, else one more than the highest of the
/// parents. The nodes are the rows, followed by the groups.
class LevelFinder {
 public:
  explicit LevelFinder(const pedigree_rows& rows)
      : rows_(rows), levels_(rows.sires.size() + rows.groups.size(), NOT_VISITED) {}

  /// @return whether there is no cycle
  bool find() {
    for (std::size_t node = 0; node < levels_.size(); ++node) {
      if (levels_[node] == NOT_VISITED && !walkFrom(node)) return false;
    }
    return true;
  }

  const std::vector<std::uint32_t>& levels() const { return levels_; }
  std::vector<std::size_t> cycle() const { return cycle_; }

 private:
  // A walk in depth without recursion: a studbook may have a hundred thousand generations.
  bool walkFrom(std::size_t start) {
    path_.assign(1, start);
    while (!path_.empty()) {
      const std::size_t node = path_.back();
      levels_[node] = ON_PATH;
      std::uint32_t level = 0;
      std::size_t next = node;
      forEachParent(node, [&](std::size_t parent) {
        const std::uint32_t parent_level = levels_[parent];
        if (parent_level < ON_PATH) {
          level = std::max(level, parent_level + 1);
        } else if (next == node && !is_closed_) {
          next = parent;
          is_closed_ = parent_level == ON_PATH;
        }
      });
      if (is_closed_) return keepCycle(next);
      if (next == node) {
        levels_[node] = level;
        path_.pop_back();
      } else {
        path_.push_back(next);
      }
    }
    return true;
  }

  template <class Visit>
  void forEachParent(std::size_t node, Visit visit) {
    const std::size_t animals = rows_.sires.size();
    if (node < animals) {
      visitParent(rows_.sires[node], visit);
      visitParent(rows_.dams[node], visit);
      return;
    }
    for (const possible_parent& candidate : rows_.groups[node - animals]) {
      if (candidate.animal < animals) visitParent(candidate.animal, visit);
    }
  }

  template <class Visit>
  void visitParent(animal_number parent, Visit& visit) {
    const std::size_t animals = rows_.sires.size();
    const bool is_group = parent >= FIRST_GROUP && parent - FIRST_GROUP < rows_.groups.size();
    const std::size_t node = is_group ? animals + (parent - FIRST_GROUP) : parent;
    if (!is_group && parent >= animals) return;
    visit(node);
  }

  bool keepCycle(std::size_t closing) {
    const auto first = std::find(path_.begin(), path_.end(), closing);
    std::copy_if(first, path_.end(), std::back_inserter(cycle_),
                 [this](std::size_t node) { return node < rows_.sires.size(); });
    return false;
  }

  const pedigree_rows& rows_;
  std::vector<std::uint32_t> levels_;
  std::vector<std::size_t> path_;
  std::vector<std::size_t> cycle_;
  bool is_closed_ = false;
};

bool hasCandidate(const std::vector<possible_parent>& group, std::size_t animals) {
  return std::any_of(group.begin(), group.end(), [animals](const possible_parent& candidate) {
    return candidate.animal < animals && candidate.share > 0;
  });
}

std::vector<possible_parent> usableShares(const std::vector<possible_parent>& candidates,
                                          const std::vector<animal_number>& numbers, std::size_t animals) {
  std::vector<possible_parent> usable;
  double total = 0;
  for (const possible_parent& candidate : candidates) {
    if (!(candidate.share > 0)) continue;
    total += candidate.share;
    if (candidate.animal < animals) {
      usable.push_back({numbers[candidate.animal], candidate.share});
    }
  }
  if (total > 1) {
    for (possible_parent& candidate : usable) candidate.share /= total;
  }
  return usable;
}

}  // namespace

std::vector<std::size_t> GeneticPedigree::assign(const pedigree_rows& rows) {
  *this = GeneticPedigree();
  LevelFinder finder(rows);
  if (!finder.find()) return finder.cycle();
  numberByLevel(rows, finder.levels());
  return {};
}

void GeneticPedigree::numberByLevel(const pedigree_rows& rows, const std::vector<std::uint32_t>& levels) {
  const std::size_t nodes = levels.size();
  if (nodes == 0) return;
  level_begins_.assign(*std::max_element(levels.begin(), levels.end()) + 2, 0);
  for (const std::uint32_t level : levels) ++level_begins_[level + 1];
  for (std::size_t level = 1; level < level_begins_.size(); ++level) {
    level_begins_[level] += level_begins_[level - 1];
  }
  std::vector<animal_number> next = level_begins_;
  std::vector<animal_number> numbers(nodes);
  for (std::size_t node = 0; node < nodes; ++node) numbers[node] = next[levels[node]]++;
  sires_.resize(nodes);
  dams_.resize(nodes);
  rows_.resize(nodes);
  groups_.resize(rows.groups.size());
  if (!rows.of_unknown_origin.empty()) of_unknown_origin_.resize(nodes);
  for (std::size_t node = 0; node < nodes; ++node) place(rows, node, numbers);
  numbers.resize(rows.sires.size());
  numbers_ = std::move(numbers);
}

void GeneticPedigree::place(const pedigree_rows& rows, std::size_t node, const std::vector<animal_number>& numbers) {
  const std::size_t animals = rows.sires.size();
  const animal_number number = numbers[node];
  if (node >= animals) {
    const std::size_t group = node - animals;
    groups_[group] = usableShares(rows.groups[group], numbers, animals);
    sires_[number] = FIRST_GROUP + static_cast<animal_number>(group);
    dams_[number] = UNKNOWN_SOURCE;
    rows_[number] = NO_ROW;
    return;
  }
  const auto numberOf = [&](animal_number parent) {
    if (parent < animals) return numbers[parent];
    const animal_number group = parent - FIRST_GROUP;
    if (parent >= FIRST_GROUP && group < rows.groups.size() && hasCandidate(rows.groups[group], animals)) {
      return numbers[animals + group];
    }
    return parent == WILD_SOURCE ? WILD_SOURCE : UNKNOWN_SOURCE;
  };
  sires_[number] = numberOf(rows.sires[node]);
  dams_[number] = numberOf(rows.dams[node]);
  rows_[number] = node;
  if (!of_unknown_origin_.empty()) of_unknown_origin_[number] = rows.of_unknown_origin[node];
}

GeneticPedigree GeneticPedigree::ancestorsOf(std::span<const animal_number> animals) const {
  std::vector<bool> is_wanted(size());
  for (const animal_number animal : animals) is_wanted[animal] = true;
  for (animal_number node = static_cast<animal_number>(size()); node-- > 0;) {
    if (!is_wanted[node]) continue;
    forEachParent(node, [&](animal_number parent, double) { is_wanted[parent] = true; });
  }
  GeneticPedigree part;
  part.numbers_.assign(size(), UNKNOWN_SOURCE);
  const auto numberOf = [&](animal_number parent) { return isNode(parent) ? part.numbers_[parent] : parent; };
  for (std::size_t level = 0; level + 1 < level_begins_.size(); ++level) {
    const std::size_t before = part.size();
    for (animal_number node = level_begins_[level]; node < level_begins_[level + 1]; ++node) {
      if (!is_wanted[node]) continue;
      part.numbers_[node] = static_cast<animal_number>(part.size());
      if (isGroup(node)) {
        std::vector<possible_parent> shares(candidates(node).begin(), candidates(node).end());
        for (possible_parent& share : shares) share.animal = part.numbers_[share.animal];
        part.sires_.push_back(FIRST_GROUP + static_cast<animal_number>(part.groups_.size()));
        part.groups_.push_back(std::move(shares));
      } else {
        part.sires_.push_back(numberOf(sires_[node]));
      }
      part.dams_.push_back(numberOf(dams_[node]));
      part.rows_.push_back(node);
      if (!of_unknown_origin_.empty()) part.of_unknown_origin_.push_back(of_unknown_origin_[node]);
    }
    if (part.size() != before) part.level_begins_.push_back(static_cast<animal_number>(before));
  }
  if (part.size() != 0) part.level_begins_.push_back(static_cast<animal_number>(part.size()));
  return part;
}

}  // namespace spx
