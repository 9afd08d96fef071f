#include "spx/demography/growth.h"

#include <algorithm>
#include <cmath>

#include "spx/core/estimated_dates.h"
#include "spx/support/random.h"

namespace spx {
namespace {

/// The offspring that a newborn can expect to have at an age.
struct bearing {
  double age;
  double offspring;
};

std::vector<bearing> bearingsOf(const std::vector<life_table_row>& table, PARENT_AGE parents) {
  std::vector<bearing> result;
  for (const life_table_row& row : table) {
    const bool middle = parents == PARENT_AGE::MIDDLE;
    const double rate = row.m / row.width;
    result.push_back({row.age + (middle ? row.width / 2 : 0), rate * (middle ? row.L : row.l * row.width)});
  }
  return result;
}

// Euler's sum less 1, for r per year; it decreases as r grows.
double eulerSum(const std::vector<bearing>& bearings, double r) {
  double sum = -1;
  for (const bearing& one : bearings) {
    if (one.offspring > 0) sum += one.offspring * std::exp(-r * one.age / DAYS_PER_YEAR);
  }
  return sum;
}

// The root r, per year; NaN when all births are at age 0, which leaves no root.
double solveEuler(const std::vector<bearing>& bearings) {
  constexpr double STEEPEST = 500;
  double low = -1;
  double high = 1;
  while (eulerSum(bearings, low) < 0 && low > -STEEPEST) low *= 2;
  while (eulerSum(bearings, high) > 0 && high < STEEPEST) high *= 2;
  if (eulerSum(bearings, low) < 0 || eulerSum(bearings, high) > 0) return NOT_KNOWN;
  for (double middle = 0; high - low > 1e-13 * std::max(1.0, std::abs(middle));) {
    const double next = (low + high) / 2;
    if (next == low || next == high) break;
    middle = next;
    (eulerSum(bearings, middle) > 0 ? low : high) = middle;
  }
  return (low + high) / 2;
}

void setStable(const std::vector<life_table_row>& table, const std::vector<bearing>& bearings, growth_rates& growth) {
  double sum = 0;
  for (const life_table_row& row : table) {
    growth.stable_age.push_back(row.L * std::exp(-growth.r * (row.age + row.width / 2)));
    sum += growth.stable_age.back();
  }
  for (double& share : growth.stable_age) share /= sum;
  growth.reproductive_value.resize(table.size());
  double later = 0;
  for (std::size_t at = table.size(); at-- > 0;) {
    later += bearings[at].offspring * std::exp(-growth.r * bearings[at].age);
    growth.reproductive_value[at] =
        table[at].l > 0 ? later * std::exp(growth.r * table[at].age) / table[at].l : NOT_KNOWN;
  }
}

}  // namespace

growth_rates growthRates(const std::vector<life_table_row>& table, PARENT_AGE parents) {
  const std::vector<bearing> bearings = bearingsOf(table, parents);
  growth_rates growth;
  if (table.empty()) return growth;
  growth.r0 = 0;
  double ages = 0;
  for (const bearing& one : bearings) {
    growth.r0 += one.offspring;
    ages += one.age * one.offspring;
  }
  if (!(growth.r0 > 0)) return growth;
  growth.generation_time = ages / growth.r0;
  const double yearly = solveEuler(bearings);
  if (std::isnan(yearly)) return growth;
  growth.r = yearly / DAYS_PER_YEAR;
  growth.lambda = std::exp(yearly);
  growth.stable_generation = 0;
  for (const bearing& one : bearings) {
    growth.stable_generation += one.age * one.offspring * std::exp(-growth.r * one.age);
  }
  setStable(table, bearings, growth);
  return growth;
}

namespace {

qs_lib::DataRange<double> middleOf(std::vector<double>& values) {
  std::sort(values.begin(), values.end());
  return {quantileOf(values, 0.025), quantileOf(values, 0.975)};
}

// One run: as many samples as there are, drawn with replacement.
void drawSamples(const life_tallies& data, qs_lib::RandomSource& random, life_tallies& drawn) {
  const std::size_t each = drawn.tallies.size();
  std::vector<std::uint32_t> times(data.samples);
  for (std::size_t draw = 0; draw < data.samples; ++draw) {
    ++times[static_cast<std::size_t>(random.uniform() * static_cast<double>(data.samples))];
  }
  std::fill(drawn.tallies.begin(), drawn.tallies.end(), class_tally());
  for (std::size_t sample = 0; sample < data.samples; ++sample) {
    if (times[sample] == 0) continue;
    const double weight = times[sample];
    const class_tally* from = data.tallies.data() + sample * each;
    for (std::size_t at = 0; at < each; ++at) {
      class_tally& to = drawn.tallies[at];
      to.at_risk += weight * from[at].at_risk;
      to.exposure += weight * from[at].exposure;
      to.deaths += weight * from[at].deaths;
      to.daughters += weight * from[at].daughters;
      to.sons += weight * from[at].sons;
      to.offspring += weight * from[at].offspring;
    }
  }
}

}  // namespace

growth_intervals bootstrapGrowth(const life_tallies& data, SEX sex, bool same_sex, PARENT_AGE parents, std::size_t runs,
                                 std::uint32_t seed) {
  qs_lib::RandomSource random;
  random.setSeed(seed);
  life_tallies drawn;
  drawn.classes = data.classes;
  drawn.tallies.resize(2 * data.classes.starts.size());
  growth_intervals result;
  std::vector<double> r0;
  std::vector<double> generation;
  std::vector<double> r;
  std::vector<double> lambda;
  for (std::size_t run = 0; run < runs; ++run) {
    drawSamples(data, random, drawn);
    const growth_rates growth = growthRates(
        sex == SEX::ALL ? lifeTableOfAll(drawn, same_sex) : lifeTable(drawn.of(0, sex), drawn.classes, sex, same_sex),
        parents);
    if (std::isnan(growth.lambda)) {
      ++result.failed;
      continue;
    }
    ++result.runs;
    r0.push_back(growth.r0);
    generation.push_back(growth.generation_time);
    r.push_back(growth.r);
    lambda.push_back(growth.lambda);
  }
  result.r0 = middleOf(r0);
  result.generation_time = middleOf(generation);
  result.r = middleOf(r);
  result.lambda = middleOf(lambda);
  return result;
}

}  // namespace spx
