#include "spx/genetics/generation_interval.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace spx {
namespace {

class PathAges {
 public:
  void add(double age) { ages_.push_back(std::max(0.0, age)); }

  interval_path path() const {
    constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
    const auto count = static_cast<double>(ages_.size());
    if (ages_.empty()) return {NOT_A_NUMBER, NOT_A_NUMBER, 0};
    const double mean = std::accumulate(ages_.begin(), ages_.end(), 0.0) / count;
    double squares = 0;
    for (const double age : ages_) squares += (age - mean) * (age - mean);
    const double error = ages_.size() < 2 ? NOT_A_NUMBER : std::sqrt(squares / (count - 1) / count);
    return {mean, error, ages_.size()};
  }

 private:
  std::vector<double> ages_;
};

double meanOfPaths(const generation_intervals& intervals) {
  double sum = 0;
  int paths = 0;
  for (const interval_path& path :
       {intervals.sire_son, intervals.sire_daughter, intervals.dam_son, intervals.dam_daughter}) {
    if (path.births == 0) continue;
    sum += path.mean;
    ++paths;
  }
  return paths == 0 ? std::numeric_limits<double>::quiet_NaN() : sum / paths;
}

}  // namespace

generation_intervals generationIntervals(const GeneticPedigree& pedigree, std::span<const double> births,
                                         std::span<const SEX> sexes) {
  std::vector<animal_number> everybody(pedigree.size());
  std::iota(everybody.begin(), everybody.end(), animal_number{0});
  return generationIntervals(pedigree, births, sexes, everybody);
}

generation_intervals generationIntervals(const GeneticPedigree& pedigree, std::span<const double> births,
                                         std::span<const SEX> sexes, std::span<const animal_number> offspring) {
  const std::vector<std::size_t> counts = offspringCounts(pedigree);
  PathAges paths[2][2];
  for (const animal_number animal : offspring) {
    if (counts[animal] == 0 || pedigree.isGroup(animal)) continue;
    if (sexes[animal] != SEX::MALE && sexes[animal] != SEX::FEMALE) continue;
    const animal_number parents[] = {pedigree.sire(animal), pedigree.dam(animal)};
    for (std::size_t role = 0; role < 2; ++role) {
      const animal_number parent = parents[role];
      if (!pedigree.isNode(parent) || pedigree.isGroup(parent)) continue;
      const double age = births[animal] - births[parent];
      if (!std::isnan(age)) paths[role][sexes[animal] == SEX::MALE ? 0 : 1].add(age);
    }
  }
  generation_intervals found{paths[0][0].path(), paths[0][1].path(), paths[1][0].path(), paths[1][1].path(), 0};
  found.mean = meanOfPaths(found);
  return found;
}

std::vector<std::size_t> offspringCounts(const GeneticPedigree& pedigree) {
  std::vector<std::size_t> counts(pedigree.size());
  for (animal_number node = 0; node < pedigree.size(); ++node) {
    if (pedigree.isGroup(node)) continue;
    pedigree.forEachParent(node, [&](animal_number parent, double) { ++counts[parent]; });
  }
  return counts;
}

}  // namespace spx
