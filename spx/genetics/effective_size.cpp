#include "spx/genetics/effective_size.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "spx/genetics/ancestor_sweep.h"
#include "spx/genetics/parallel.h"

namespace spx {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double ENDLESS = std::numeric_limits<double>::infinity();
constexpr double NORMAL_95 = 1.959963984540054;

effective_size nothingFrom(std::size_t left_out) {
  return {NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER, 0, left_out};
}

double sizeOfRate(double rate) {
  return rate > 0 ? 1 / (2 * rate) : ENDLESS;
}

/// The size from a rate of increase and the rate's standard error.
effective_size sizeFromRate(double rate, double rate_error, std::size_t used, std::size_t left_out) {
  effective_size found = nothingFrom(left_out);
  found.used = used;
  found.size = sizeOfRate(rate);
  if (std::isfinite(found.size)) found.standard_error = 2 * found.size * found.size * rate_error;
  found.low = sizeOfRate(rate + NORMAL_95 * rate_error);
  found.high = sizeOfRate(rate - NORMAL_95 * rate_error);
  return found;
}

struct Moments {
  double count = 0;
  double sum = 0;
  double squares = 0;

  void add(double value) {
    ++count;
    sum += value;
    squares += value * value;
  }
  void add(const Moments& other) {
    count += other.count;
    sum += other.sum;
    squares += other.squares;
  }
  double mean() const { return sum / count; }
  double deviation() const {
    if (count < 2) return NOT_A_NUMBER;
    return std::sqrt(std::max(0.0, (squares - sum * sum / count) / (count - 1)));
  }
};

double familySize(double animals, double sum, double squares) {
  const double mean = sum / animals;
  const double variance = (squares - sum * mean) / (animals - 1);
  return (sum - 1) / (mean - 1 + variance / mean);
}

/// Moments of the numbers of sons and daughters of some parents.
struct FamilyMoments {
  double parents = 0;
  std::array<double, 2> sums{};
  std::array<double, 2> squares{};
  double products = 0;

  void add(const std::array<double, 2>& offspring) {
    ++parents;
    for (std::size_t sex = 0; sex < 2; ++sex) {
      sums[sex] += offspring[sex];
      squares[sex] += offspring[sex] * offspring[sex];
    }
    products += offspring[0] * offspring[1];
  }
  double variance(std::size_t sex) const { return (squares[sex] - sums[sex] * sums[sex] / parents) / (parents - 1); }
  double covariance() const { return (products - sums[0] * sums[1] / parents) / (parents - 1); }
};

/// By node: the numbers of its sons and daughters.
std::vector<std::array<double, 2>> sonsAndDaughters(const GeneticPedigree& pedigree, std::span<const SEX> sexes) {
  std::vector<std::array<double, 2>> counts(pedigree.size());
  for (animal_number animal = 0; animal < pedigree.size(); ++animal) {
    const bool is_known = sexes[animal] == SEX::MALE || sexes[animal] == SEX::FEMALE;
    if (pedigree.isGroup(animal)) continue;
    for (const animal_number parent : {pedigree.sire(animal), pedigree.dam(animal)}) {
      if (!pedigree.isNode(parent)) continue;
      counts[parent][0] += !is_known ? 0.5 : sexes[animal] == SEX::MALE ? 1 : 0;
      counts[parent][1] += !is_known ? 0.5 : sexes[animal] == SEX::FEMALE ? 1 : 0;
    }
  }
  return counts;
}

}  // namespace

effective_size effectiveSizeBySexRatio(std::size_t males, std::size_t females) {
  effective_size found = nothingFrom(0);
  found.used = males + females;
  if (found.used == 0) return found;
  const auto m = static_cast<double>(males);
  const auto f = static_cast<double>(females);
  found.size = 4 * m * f / (m + f);
  return found;
}

effective_size effectiveSizeByFamilySize(std::span<const std::size_t> offspring) {
  Moments all;
  for (const std::size_t size : offspring) all.add(static_cast<double>(size));
  effective_size found = nothingFrom(0);
  found.used = offspring.size();
  if (all.count < 3 || all.sum == 0) return found;
  found.size = familySize(all.count, all.sum, all.squares);
  Moments without_one;
  for (const std::size_t size : offspring) {
    const auto own = static_cast<double>(size);
    without_one.add(familySize(all.count - 1, all.sum - own, all.squares - own * own));
  }
  found.standard_error = without_one.deviation() * (all.count - 1) / std::sqrt(all.count);
  found.low = found.size - NORMAL_95 * found.standard_error;
  found.high = found.size + NORMAL_95 * found.standard_error;
  return found;
}

effective_size effectiveSizeByInbreeding(std::span<const animal_number> set, std::span<const double> inbreeding,
                                         std::span<const double> equivalent, INCREASE increase) {
  const double start = increase == INCREASE::SINCE_FOUNDERS ? 0 : 1;
  Moments rates;
  std::size_t left_out = 0;
  for (const animal_number animal : set) {
    const double generations = equivalent[animal] - start;
    if (generations > 0) {
      rates.add(1 - std::pow(1 - inbreeding[animal], 1 / generations));
    } else {
      ++left_out;
    }
  }
  if (rates.count == 0) return nothingFrom(left_out);
  return sizeFromRate(rates.mean(), rates.deviation() / std::sqrt(rates.count), static_cast<std::size_t>(rates.count),
                      left_out);
}

effective_size effectiveSizeByKinship(const GeneticPedigree& pedigree, const relationship_terms& terms,
                                      std::span<const animal_number> set, std::span<const double> equivalent,
                                      unsigned threads) {
  constexpr std::size_t LANES = RelationshipSweep::LANES;
  std::vector<animal_number> used;
  for (const animal_number animal : set) {
    if (equivalent[animal] > 0) used.push_back(animal);
  }
  const std::size_t left_out = set.size() - used.size();
  if (used.size() < 2) return nothingFrom(left_out);
  PackedAncestors packed(pedigree);
  for (const animal_number animal : used) packed.add(animal);
  packed.pack();
  const std::size_t blocks = (used.size() + LANES - 1) / LANES;
  std::vector<RelationshipSweep> sweeps(std::max(1U, threads));
  std::vector<Moments> rates_of_block(blocks);
  forEachTask(blocks, sweeps.size(), [&](std::size_t worker, std::size_t block) {
    RelationshipSweep& sweep = sweeps[worker];
    const std::size_t first = block * LANES;
    const std::size_t last = std::min(first + LANES, used.size());
    sweep.start(packed);
    for (std::size_t row = first; row < last; ++row) {
      sweep.add(packed.slot(used[row]), row - first, 0.5);
    }
    sweep.spread(packed, terms.sampling);
    for (std::size_t row = first; row < last; ++row) {
      for (std::size_t column = 0; column < row; ++column) {
        const double kinship = sweep.at(packed.slot(used[column]))[row - first];
        const double generations = equivalent[used[row]] + equivalent[used[column]];
        rates_of_block[block].add(1 - std::pow(1 - kinship, 2 / generations));
      }
    }
  });
  Moments rates;
  for (const Moments& part : rates_of_block) rates.add(part);
  const auto animals = static_cast<double>(used.size());
  return sizeFromRate(rates.mean(), rates.deviation() / std::sqrt(animals), used.size(), left_out);
}

effective_size effectiveSizeByTrend(std::span<const animal_number> set, std::span<const double> inbreeding,
                                    std::span<const double> births, double generation_interval) {
  std::vector<std::array<double, 2>> points;
  std::array<double, 2> means{};
  for (const animal_number animal : set) {
    if (std::isnan(births[animal]) || !(inbreeding[animal] < 1)) continue;
    points.push_back({births[animal], std::log1p(-inbreeding[animal])});
    means[0] += points.back()[0];
    means[1] += points.back()[1];
  }
  const std::size_t left_out = set.size() - points.size();
  const auto count = static_cast<double>(points.size());
  for (double& mean : means) mean /= count;
  double xx = 0;
  double xy = 0;
  double yy = 0;
  for (const auto& [x, y] : points) {
    xx += (x - means[0]) * (x - means[0]);
    xy += (x - means[0]) * (y - means[1]);
    yy += (y - means[1]) * (y - means[1]);
  }
  if (count < 3 || xx == 0 || !(generation_interval > 0)) return nothingFrom(left_out);
  const double slope = xy / xx;
  const double residual = std::max(0.0, yy - slope * xy) / (count - 2);
  const double rate = -std::expm1(slope * generation_interval);
  const double rate_error = std::sqrt(residual / xx) * generation_interval * std::exp(slope * generation_interval);
  return sizeFromRate(rate, rate_error, points.size(), left_out);
}

effective_size effectiveSizeByLifetimeFamilies(const GeneticPedigree& pedigree, std::span<const double> births,
                                               std::span<const SEX> sexes, std::span<const animal_number> set,
                                               double first_birth, double last_birth, double generation_interval) {
  const std::vector<std::array<double, 2>> offspring = sonsAndDaughters(pedigree, sexes);
  FamilyMoments males;
  FamilyMoments females;
  for (const animal_number animal : set) {
    if (!(births[animal] >= first_birth && births[animal] <= last_birth)) continue;
    if (sexes[animal] == SEX::MALE) males.add(offspring[animal]);
    if (sexes[animal] == SEX::FEMALE) females.add(offspring[animal]);
  }
  effective_size found = nothingFrom(0);
  found.used = static_cast<std::size_t>(males.parents + females.parents);
  found.left_out = set.size() - found.used;
  const double time = last_birth - first_birth;
  if (males.parents < 2 || females.parents < 2 || !(time > 0) || !(generation_interval > 0)) return found;
  const double ratio = males.parents / females.parents;
  const double by_males = 2 + males.variance(0) + 2 * ratio * males.covariance() + ratio * ratio * males.variance(1);
  const double by_females =
      2 + females.variance(0) / (ratio * ratio) + 2 / ratio * females.covariance() + females.variance(1);
  const double per_time = generation_interval / time;
  found.size = 16 / (by_males / (males.parents * per_time) + by_females / (females.parents * per_time));
  return found;
}

double diversityAhead(double diversity, double effective_size, double years, double generation_interval) {
  return diversity * std::pow(1 - 1 / (2 * effective_size), years / generation_interval);
}

}  // namespace spx
