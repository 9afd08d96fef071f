// Generations, completeness, intervals and effective sizes, by hand and by closed forms.
#include "spx/genetics/generations.h"

#include <cmath>

#include <gtest/gtest.h>

#include "spx/genetics/effective_size.h"
#include "spx/genetics/generation_interval.h"

#include "tests/genetics/random_pedigree.h"

namespace spx {
namespace {

using namespace genetics_test;

constexpr animal_number NONE = UNKNOWN_SOURCE;
const double NOT_A_NUMBER = std::nan("");

//  0   1     WILD
//   \ / \   /
//    2   3    ?
//     \ / \  /
//      4   5       6 = 4 x 2, 7 = (2 or 6) x 5
const pedigree_rows DRAWN{
    {NONE, NONE, 0, WILD_SOURCE, 2, NONE, 4, FIRST_GROUP}, {NONE, NONE, 1, 1, 3, 3, 2, 5}, {{{2, 0.5}, {6, 0.5}}}, {}};

GeneticPedigree numberedPedigree(const pedigree_rows& rows) {
  GeneticPedigree pedigree;
  EXPECT_TRUE(pedigree.assign(rows).empty());
  return pedigree;
}

TEST(Generations, OfADrawnPedigree) {
  const GeneticPedigree pedigree = numberedPedigree(DRAWN);
  const generation_numbers found = generationsOf(pedigree);
  const struct {
    double cites, genetic, maternal, equivalent, traced, maximum;
  } expected[] =
      {
          {0, 0, 0, 0, 0, 0},     {0, 0, 0, 0, 0, 0},         {1, 1, 1, 1, 1, 1},
          {1, 1, 1, 1, 1, 1},     {2, 2, 2, 2, 2, 2},         {2, 2, 2, 1, 0, 2},
          {2, 2.5, 2, 2.5, 2, 3}, {2, 2.875, 3, 2.375, 1, 4},  // the mean of 2 and 6 is 1.75 genetic, 1.75 equivalent
      };
  for (std::size_t row = 0; row < std::size(expected); ++row) {
    SCOPED_TRACE(row);
    const animal_number animal = pedigree.number(row);
    EXPECT_DOUBLE_EQ(found.cites[animal], expected[row].cites);
    EXPECT_DOUBLE_EQ(found.genetic[animal], expected[row].genetic);
    EXPECT_DOUBLE_EQ(found.maternal[animal], expected[row].maternal);
    EXPECT_DOUBLE_EQ(found.equivalent[animal], expected[row].equivalent);
    EXPECT_DOUBLE_EQ(found.traced[animal], expected[row].traced);
    EXPECT_DOUBLE_EQ(found.maximum[animal], expected[row].maximum);
  }
}

TEST(Completeness, OfADrawnPedigree) {
  const GeneticPedigree pedigree = numberedPedigree(DRAWN);
  const auto by_generation = completenessByGeneration(pedigree, 3);
  const auto at = [&](std::size_t generation, std::size_t row) {
    return by_generation[generation - 1][pedigree.number(row)];
  };
  EXPECT_EQ(at(1, 0), 0);
  EXPECT_EQ(at(1, 5), 0.5);
  EXPECT_EQ(at(2, 5), 0.5);
  EXPECT_EQ(at(3, 5), 0);
  EXPECT_EQ(at(3, 6), 0.5);
  EXPECT_EQ(at(2, 7), 0.75);
  // Over two generations: 4 is complete, 5 has no sire, 7 lacks half of its dam's parents.
  const std::vector<double> index = completenessIndex(pedigree, 2);
  const double paternal = 0.5;
  const double maternal = (0.5 + 0.25) / 2;
  EXPECT_DOUBLE_EQ(index[pedigree.number(4)], 1);
  EXPECT_EQ(index[pedigree.number(5)], 0);
  EXPECT_DOUBLE_EQ(index[pedigree.number(7)], 4 * paternal * maternal / (paternal + maternal));
}

// The known ancestors, generation by generation, add up to the equivalent complete generations.
TEST(Completeness, AddsUpToEquivalentGenerations) {
  const pedigree_rows rows = randomRows({60, 0.2, 0.1}, 4);
  const GeneticPedigree pedigree = numberedPedigree(rows);
  const auto by_generation = completenessByGeneration(pedigree, 60);
  const generation_numbers found = generationsOf(pedigree);
  for (std::size_t row = 0; row < 60; ++row) {
    double sum = 0;
    for (const auto& known : by_generation) sum += known[pedigree.number(row)];
    EXPECT_NEAR(sum, found.equivalent[pedigree.number(row)], 1e-12) << row;
  }
}

TEST(GenerationInterval, TakesOffspringThatHaveBred) {
  // 0 and 1 are the parents of 2 (male) and 3 (female), which breed; 4 and 5 do not.
  const GeneticPedigree pedigree = numberedPedigree({{NONE, NONE, 0, 0, 2, 0}, {NONE, NONE, 1, 1, 3, 3}, {}, {}});
  const std::vector<double> births{0, 2, 5, 7, 9, NOT_A_NUMBER};
  const std::vector<SEX> sexes{SEX::MALE, SEX::FEMALE, SEX::MALE, SEX::FEMALE, SEX::MALE, SEX::MALE};
  const generation_intervals found = generationIntervals(pedigree, births, sexes);
  EXPECT_DOUBLE_EQ(found.sire_son.mean, 5);
  EXPECT_DOUBLE_EQ(found.sire_daughter.mean, 7);
  EXPECT_DOUBLE_EQ(found.dam_son.mean, 3);
  EXPECT_DOUBLE_EQ(found.dam_daughter.mean, 5);
  EXPECT_DOUBLE_EQ(found.mean, 5);
  EXPECT_EQ(found.dam_son.births, 1U);
  EXPECT_TRUE(std::isnan(found.dam_son.standard_error));
  EXPECT_TRUE(std::isnan(generationIntervals(pedigree, births, sexes, {}).mean));
}

TEST(EffectiveSize, ByCountsIsThatOfTheFormulas) {
  EXPECT_DOUBLE_EQ(effectiveSizeBySexRatio(10, 10).size, 20);
  EXPECT_DOUBLE_EQ(effectiveSizeBySexRatio(1, 99).size, 3.96);
  EXPECT_DOUBLE_EQ(effectiveSizeBySexRatio(0, 5).size, 0);
  EXPECT_TRUE(std::isnan(effectiveSizeBySexRatio(0, 0).size));
  // Everybody has two: 2N - 1. Mean 2, variance 8/3: (4 x 4 - 2) / (8/3 + 2) = 3.
  const std::size_t equal[] = {2, 2, 2, 2, 2};
  const std::size_t unequal[] = {0, 2, 2, 4};
  const std::size_t nobody[] = {0, 0, 0};
  EXPECT_DOUBLE_EQ(effectiveSizeByFamilySize(equal).size, 9);
  EXPECT_DOUBLE_EQ(effectiveSizeByFamilySize(unequal).size, 3);
  EXPECT_TRUE(std::isnan(effectiveSizeByFamilySize(nobody).size));
}

TEST(EffectiveSize, ByLifetimeFamiliesFollowsHill) {
  const struct {
    const char* what;
    animal_number second_sire;
    std::size_t idle_females;
    double size;
  } cases[] = {
      {"nobody differs: twice the 10 animals born in a generation", 1, 0, 20},
      {"one male sires all: V and C are 2 for males", 0, 0, 80.0 / 12},
      {"and half the females have none: M/F = 1/2, V and C are 1/3 for females", 0, 2, 1 / (6.5 / 80 + 5.0 / 160)},
  };
  for (const auto& [what, second_sire, idle_females, size] : cases) {
    SCOPED_TRACE(what);
    // Males 0 and 1, females 2 and 3, a son and a daughter for each female, then females without offspring.
    pedigree_rows rows{
        {NONE, NONE, NONE, NONE, 0, 0, second_sire, second_sire}, {NONE, NONE, NONE, NONE, 2, 2, 3, 3}, {}, {}};
    std::vector<double> births{0, 2, 1, 1, 6, 6, 6, 6};
    std::vector<SEX> sexes(8);
    for (std::size_t row = 0; row < 8; ++row)
      sexes[row] = row < 2 || (row > 3 && row % 2 == 0) ? SEX::MALE : SEX::FEMALE;
    for (std::size_t idle = 0; idle < idle_females; ++idle) {
      rows.sires.push_back(NONE);
      rows.dams.push_back(NONE);
      births.push_back(1);
      sexes.push_back(SEX::FEMALE);
    }
    const GeneticPedigree pedigree = numberedPedigree(rows);
    std::vector<double> births_by_number(births.size());
    std::vector<SEX> sexes_by_number(births.size());
    for (std::size_t row = 0; row < births.size(); ++row) {
      births_by_number[pedigree.number(row)] = births[row];
      sexes_by_number[pedigree.number(row)] = sexes[row];
    }
    const auto found = effectiveSizeByLifetimeFamilies(pedigree, births_by_number, sexes_by_number,
                                                       numbersOf(pedigree, births.size()), 0, 2, 5);
    EXPECT_NEAR(found.size, size, 1e-12);
    EXPECT_EQ(found.used, 4 + idle_females);
    EXPECT_EQ(found.left_out, 4U);
  }
  const GeneticPedigree one = numberedPedigree({{NONE}, {NONE}, {}, {}});
  EXPECT_TRUE(std::isnan(effectiveSizeByLifetimeFamilies(one, std::vector<double>{0}, std::vector<SEX>{SEX::MALE},
                                                         numbersOf(one, 1), 0, 2, 5)
                             .size));
}

// In an ideal population of N monoecious animals everything follows from 1 - F = (1 - 1/2N)^t.
TEST(EffectiveSize, ByIncreaseFindsTheRateThatWasPutIn) {
  constexpr double RATE = 1.0 / 50;
  const std::vector<double> generations{3, 4, 5, 1, 0};
  std::vector<double> since_founders;
  std::vector<double> since_offspring;
  std::vector<double> births;
  for (const double t : generations) {
    since_founders.push_back(1 - std::pow(1 - RATE, t));
    since_offspring.push_back(1 - std::pow(1 - RATE, std::max(0.0, t - 1)));
    births.push_back(2000 + 7 * t);
  }
  const std::vector<animal_number> set{0, 1, 2, 3, 4};
  const auto by_founders = effectiveSizeByInbreeding(set, since_founders, generations, INCREASE::SINCE_FOUNDERS);
  const auto by_offspring =
      effectiveSizeByInbreeding(set, since_offspring, generations, INCREASE::SINCE_FIRST_OFFSPRING);
  EXPECT_NEAR(by_founders.size, 25, 1e-9);
  EXPECT_NEAR(by_founders.low, 25, 1e-6);
  EXPECT_EQ(by_founders.left_out, 1U);
  EXPECT_NEAR(by_offspring.size, 25, 1e-9);
  EXPECT_EQ(by_offspring.left_out, 2U);
  EXPECT_NEAR(effectiveSizeByTrend(set, since_founders, births, 7).size, 25, 1e-9);
  const std::vector<double> none(5, 0.0);
  EXPECT_EQ(effectiveSizeByInbreeding(set, none, generations, INCREASE::SINCE_FOUNDERS).size, INFINITY);
  EXPECT_TRUE(std::isnan(effectiveSizeByTrend(set, none, none, 7).size)) << "all born on one day";
  EXPECT_NEAR(diversityAhead(0.9, 25, 70, 7), 0.9 * std::pow(1 - RATE, 10), 1e-12);
}

TEST(EffectiveSize, ByKinshipTakesAllPairs) {
  const pedigree_rows rows = randomRows({90, 0.05, 0}, 6);
  const GeneticPedigree pedigree = numberedPedigree(rows);
  const matrix a = tabular(rows);
  const std::vector<double> equivalent = generationsOf(pedigree).equivalent;
  double sum = 0;
  double pairs = 0;
  for (std::size_t i = 0; i < 90; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const double t_i = equivalent[pedigree.number(i)];
      const double t_j = equivalent[pedigree.number(j)];
      if (t_i == 0 || t_j == 0) continue;
      sum += 1 - std::pow(1 - a[i][j] / 2, 2 / (t_i + t_j));
      ++pairs;
    }
  }
  const effective_size found =
      effectiveSizeByKinship(pedigree, inbreedingOf(pedigree), numbersOf(pedigree, 90), equivalent, 2);
  EXPECT_NEAR(found.size, pairs / (2 * sum), 1e-9);
  EXPECT_GT(found.left_out, 0U);
  EXPECT_LT(found.low, found.size);
  EXPECT_GT(found.high, found.size);
}

}  // namespace
}  // namespace spx
