#include "spx/genetics/common_ancestors.h"

#include <algorithm>
#include <utility>

#include "spx/genetics/node_queue.h"

namespace spx {

std::vector<common_ancestor> commonAncestors(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                             animal_number a, animal_number b) {
  std::vector<std::pair<double, double>> paths(pedigree.size());
  NodeQueue waiting(pedigree.size());
  paths[a].first = 1;
  paths[b].second = 1;
  waiting.add(a);
  waiting.add(b);
  std::vector<common_ancestor> found;
  waiting.drainDown([&](animal_number node) {
    const auto [to_a, to_b] = paths[node];
    if (to_a * to_b > 0 && !pedigree.isGroup(node)) {
      found.push_back({node, to_a * to_b * terms.sampling[node] / 2});
    }
    pedigree.forEachParent(node, [&, to_a = to_a, to_b = to_b](animal_number parent, double share) {
      paths[parent].first += share * to_a;
      paths[parent].second += share * to_b;
      waiting.add(parent);
    });
  });
  std::stable_sort(found.begin(), found.end(),
                   [](const common_ancestor& x, const common_ancestor& y) { return x.kinship > y.kinship; });
  return found;
}

}  // namespace spx
