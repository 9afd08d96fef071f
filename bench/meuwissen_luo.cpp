#include "bench/meuwissen_luo.h"

#include <queue>

namespace spx::bench {
namespace {

constexpr animal_number END = UNKNOWN_SOURCE;

/// The ancestors of one animal that are still to be visited, youngest first.
class SortedList {
 public:
  explicit SortedList(std::size_t animals) : next_(animals, END) {}

  void start(animal_number animal) { first_ = animal; }
  bool empty() const { return first_ == END; }
  animal_number youngest() const { return first_; }

  /// Enters an ancestor of the youngest animal, unless the list already has it.
  void add(animal_number ancestor) {
    animal_number at = first_;
    while (next_[at] != END && next_[at] > ancestor) at = next_[at];
    if (next_[at] == ancestor) return;
    next_[ancestor] = next_[at];
    next_[at] = ancestor;
  }

  void removeYoungest() {
    const animal_number former = first_;
    first_ = next_[former];
    next_[former] = END;
  }

 private:
  std::vector<animal_number> next_;
  animal_number first_ = END;
};

/// The same in a heap, which may hold an ancestor several times.
class Heap {
 public:
  explicit Heap(std::size_t) {}
  void start(animal_number animal) { heap_.push(animal); }
  bool empty() const { return heap_.empty(); }
  animal_number youngest() const { return heap_.top(); }
  void add(animal_number ancestor) { heap_.push(ancestor); }
  void removeYoungest() {
    const animal_number former = heap_.top();
    while (!heap_.empty() && heap_.top() == former) heap_.pop();
  }

 private:
  std::priority_queue<animal_number> heap_;
};

template <class Ancestors>
std::vector<double> inbreedingBy(const GeneticPedigree& pedigree) {
  const auto animals = static_cast<animal_number>(pedigree.size());
  std::vector<double> inbreeding(animals);
  std::vector<double> sampling(animals);
  std::vector<double> line(animals);
  Ancestors ancestors(animals);
  for (animal_number animal = 0; animal < animals; ++animal) {
    const animal_number sire = pedigree.sire(animal);
    const animal_number dam = pedigree.dam(animal);
    const auto selfOf = [&](animal_number parent) { return pedigree.isNode(parent) ? 1 + inbreeding[parent] : 0.0; };
    sampling[animal] = 1 - (selfOf(sire) + selfOf(dam)) / 4;
    if (!pedigree.isNode(sire) || !pedigree.isNode(dam)) continue;
    if (animal > 0 && sire == pedigree.sire(animal - 1) && dam == pedigree.dam(animal - 1)) {
      inbreeding[animal] = inbreeding[animal - 1];
      continue;
    }
    double sum = -1;
    line[animal] = 1;
    for (ancestors.start(animal); !ancestors.empty(); ancestors.removeYoungest()) {
      const animal_number youngest = ancestors.youngest();
      const double share = line[youngest];
      for (const animal_number parent : {pedigree.sire(youngest), pedigree.dam(youngest)}) {
        if (!pedigree.isNode(parent)) continue;
        if (line[parent] == 0) ancestors.add(parent);
        line[parent] += share / 2;
      }
      sum += share * share * sampling[youngest];
      line[youngest] = 0;
    }
    inbreeding[animal] = sum;
  }
  return inbreeding;
}

}  // namespace

std::vector<double> meuwissenLuo(const GeneticPedigree& pedigree) {
  return inbreedingBy<SortedList>(pedigree);
}

std::vector<double> meuwissenLuoByHeap(const GeneticPedigree& pedigree) {
  return inbreedingBy<Heap>(pedigree);
}

}  // namespace spx::bench
