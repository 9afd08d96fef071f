// Founders, effective numbers and gene drops, by their definitions on small and random pedigrees.
#include "spx/genetics/founders.h"

#include <cmath>

#include <gtest/gtest.h>

#include "spx/genetics/diversity.h"
#include "spx/genetics/effective_ancestors.h"
#include "spx/genetics/gene_drop.h"
#include "spx/genetics/kinship.h"

#include "tests/genetics/random_pedigree.h"

namespace spx {
namespace {

using namespace genetics_test;

constexpr animal_number NONE = UNKNOWN_SOURCE;

GeneticPedigree numberedPedigree(const pedigree_rows& rows) {
  GeneticPedigree pedigree;
  EXPECT_TRUE(pedigree.assign(rows).empty());
  return pedigree;
}

/// fa directly by its definition: every share is recomputed for every ancestor, over an explicit
/// pedigree in which missing parents are rows.
/// @param known_only  whether genes from missing parents and from founders of unknown origin count as explained
///                    from the start
double slowAncestors(pedigree_rows rows, std::size_t animals, std::vector<bool> in_set, bool members_count,
                     bool known_only = false) {
  std::vector<bool> is_unknown = rows.of_unknown_origin;
  is_unknown.resize(animals);
  for (std::size_t row = 0; row < animals; ++row) {
    const bool no_sire = rows.sires[row] >= animals;
    const bool no_dam = rows.dams[row] >= animals;
    if (no_sire == no_dam) continue;
    (no_sire ? rows.sires : rows.dams)[row] = static_cast<animal_number>(rows.sires.size());
    is_unknown.push_back(true);
    rows.sires.push_back(NONE);
    rows.dams.push_back(NONE);
  }
  in_set.resize(rows.sires.size());
  // Missing parents are the last rows, but come first in the order from oldest to youngest.
  std::vector<std::size_t> order(rows.sires.size() - animals + animals);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::rotate(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(animals), order.end());
  const auto members = static_cast<double>(std::count(in_set.begin(), in_set.end(), true));
  std::vector<bool> chosen(order.size());
  std::vector<bool> has_parents(order.size());
  for (std::size_t row = 0; row < order.size(); ++row) has_parents[row] = rows.sires[row] < order.size();
  double squares = 0;
  double explained_share = 0;
  while (true) {
    std::vector<double> weight(order.size());
    std::vector<double> explained(order.size());
    for (auto place = order.rbegin(); place != order.rend(); ++place) {
      weight[*place] += in_set[*place] ? 1 / members : 0;
      for (const auto parent : {rows.sires[*place], rows.dams[*place]}) {
        if (parent < order.size()) weight[parent] += weight[*place] / 2;
      }
    }
    double best = -1;
    std::size_t who = 0;
    for (const std::size_t row : order) {
      if (chosen[row] || (known_only && is_unknown[row])) explained[row] = 1;
      for (const auto parent : {rows.sires[row], rows.dams[row]}) {
        if (parent < order.size()) explained[row] += explained[parent] / 2;
      }
      const bool barred = !members_count && in_set[row] && has_parents[row];
      const double share = chosen[row] || barred ? 0 : weight[row] * (1 - explained[row]);
      if (share > best + 1e-12) {
        best = share;
        who = row;
      }
    }
    if (best < 1e-12) return explained_share * explained_share / squares;
    chosen[who] = true;
    rows.sires[who] = rows.dams[who] = NONE;
    squares += best * best;
    explained_share += best;
  }
}

TEST(Founders, SharesAreThoseOfEveryLineToEveryFounder) {
  for (std::uint32_t seed = 1; seed <= 10; ++seed) {
    const pedigree_rows rows = randomRows({80, 0.2, 0.1}, seed);
    const GeneticPedigree pedigree = numberedPedigree(rows);
    std::vector<animal_number> set;
    for (std::size_t row = 50; row < 80; ++row) set.push_back(pedigree.number(row));
    const founder_contributions found = contributionsTo(pedigree, set);
    double sum = 0;
    for (std::size_t founder = 0; founder < found.founders.size(); ++founder) {
      const std::vector<double> shares = founderShares(pedigree, found.founders[founder]);
      double mean = 0;
      for (const animal_number animal : set) mean += shares[animal] / 30;
      EXPECT_NEAR(found.shares[founder], mean, 1e-12);
      sum += mean;
    }
    double known = 0;
    double unknown = 0;
    for (const phantom_founder& phantom : found.phantoms) {
      (phantom.is_known ? known : unknown) += phantom.share;
    }
    EXPECT_NEAR(sum + known + unknown, 1, 1e-12);
    EXPECT_NEAR(diversityOf(pedigree, inbreedingOf(pedigree), set).known_share, sum + known, 1e-12);
  }
}

TEST(Founders, CountTheMissingHalfOfAnAnimal) {
  // 0 x 1 -> 2; 0 x ? -> 3; a wild one x 2 -> 4. The living: 2, 3, 4.
  const GeneticPedigree pedigree =
      numberedPedigree({{NONE, NONE, 0, 0, WILD_SOURCE}, {NONE, NONE, 1, NONE, 2}, {}, {}});
  const std::vector<animal_number> set{pedigree.number(2), pedigree.number(3), pedigree.number(4)};
  const founder_contributions found = contributionsTo(pedigree, set);
  EXPECT_EQ(found.founders, (std::vector<animal_number>{0, 1}));
  // In twelfths: 5 and 3 from the founders, 2 unknown, 2 wild.
  EXPECT_NEAR(effectiveFounders(found), 144.0 / (25 + 9 + 4 + 4), 1e-12);
  EXPECT_NEAR(effectiveKnownFounders(pedigree, found), 100.0 / (25 + 9 + 4), 1e-12);
  EXPECT_EQ(descendantsInSet(pedigree, found.founders, set), (std::vector<std::size_t>{3, 2}));
  EXPECT_DOUBLE_EQ(knownShares(pedigree)[pedigree.number(3)], 0.5);
  EXPECT_DOUBLE_EQ(knownShares(pedigree)[pedigree.number(4)], 1);
}

// Small herds have many equal shares, also of animals that descend from each other.
TEST(EffectiveAncestors, DoNotDependOnTheOrderOfTheAnimals) {
  for (std::uint32_t seed = 1; seed <= 1500; ++seed) {
    SCOPED_TRACE(seed);
    const std::size_t animals = 6 + seed % 11;
    const pedigree_rows rows = randomRows({animals, 0.25, seed % 3 == 0 ? 0.1 : 0.0}, seed);
    for (const bool members_count : {true, false}) {
      double first = 0;
      for (std::uint32_t order = 0; order < 4; ++order) {
        std::vector<animal_number> places;
        const GeneticPedigree pedigree = numberedPedigree(shuffled(rows, order, places));
        std::vector<animal_number> set;
        for (std::size_t row = animals - 3 - 2 * (seed % 2); row < animals; ++row)
          set.push_back(pedigree.number(places[row]));
        const double number = effectiveAncestors(pedigree, set, {.members_count = members_count}).number;
        if (order == 0) first = number;
        EXPECT_NEAR(number, first, 1e-12);
      }
    }
  }
}

TEST(EffectiveAncestors, AreThoseOfTheDefinition) {
  for (const bool members_count : {true, false}) {
    for (std::uint32_t seed = 1; seed <= 30; ++seed) {
      SCOPED_TRACE(seed);
      const std::size_t animals = 10 + seed * 3;
      pedigree_rows rows = randomRows({animals, 0.1, 0}, seed);
      for (std::size_t row = 0; row < animals; ++row) {  // wild halves are missing halves here
        if (rows.sires[row] == WILD_SOURCE) rows.sires[row] = NONE;
        if (rows.dams[row] == WILD_SOURCE) rows.dams[row] = NONE;
        rows.of_unknown_origin.push_back(rows.sires[row] == NONE && rows.dams[row] == NONE && row % 3 == 0);
      }
      const GeneticPedigree pedigree = numberedPedigree(rows);
      std::vector<bool> in_set(animals);
      std::vector<animal_number> set;
      for (std::size_t row = animals / 2; row < animals; ++row) {
        in_set[row] = true;
        set.push_back(pedigree.number(row));
      }
      const bool known_only = seed % 3 == 0;
      const effective_ancestors found =
          effectiveAncestors(pedigree, set, {.members_count = members_count, .known_only = known_only});
      const double known = diversityOf(pedigree, inbreedingOf(pedigree), set).known_share;
      EXPECT_NEAR(found.explained, known_only ? known : 1, 1e-10);
      EXPECT_NEAR(found.number, slowAncestors(rows, animals, in_set, members_count, known_only), 1e-8);
      EXPECT_TRUE(std::is_sorted(found.ancestors.rbegin(), found.ancestors.rend(),
                                 [](const auto& a, const auto& b) { return a.share < b.share; }));
    }
  }
}

TEST(EffectiveAncestors, FindABottleneck) {
  // Eight founders give one pair, from which all descend.
  const pedigree_rows rows{{NONE, NONE, NONE, NONE, NONE, NONE, NONE, NONE, 0, 2, 4, 6, 8, 10, 12, 12, 12, 12},
                           {NONE, NONE, NONE, NONE, NONE, NONE, NONE, NONE, 1, 3, 5, 7, 9, 11, 13, 13, 13, 13},
                           {},
                           {}};
  const GeneticPedigree pedigree = numberedPedigree(rows);
  const std::vector<animal_number> set{pedigree.number(14), pedigree.number(15), pedigree.number(16),
                                       pedigree.number(17)};
  EXPECT_DOUBLE_EQ(effectiveFounders(contributionsTo(pedigree, set)), 8);
  const effective_ancestors found = effectiveAncestors(pedigree, set);
  EXPECT_DOUBLE_EQ(found.number, 2);
  ASSERT_EQ(found.ancestors.size(), 2U);
  EXPECT_EQ(found.ancestors[0].animal, pedigree.number(12));
  const effective_ancestors first = effectiveAncestors(pedigree, set, {.most = 1});
  EXPECT_DOUBLE_EQ(first.explained, 0.5);
}

TEST(GeneDrop, KeepsWhatIsExpected) {
  // A founder with k offspring keeps 1 - 2^-k of each gene, the common mate with all ten far more.
  pedigree_rows rows{{NONE}, {NONE}, {}, {}};
  std::vector<std::size_t> offspring;
  for (std::size_t k = 1; k <= 4; ++k) {
    const auto founder = static_cast<animal_number>(rows.sires.size());
    rows.sires.push_back(NONE);
    rows.dams.push_back(NONE);
    for (std::size_t child = 0; child < k; ++child) {
      offspring.push_back(rows.sires.size());
      rows.sires.push_back(founder);
      rows.dams.push_back(0);
    }
  }
  const GeneticPedigree pedigree = numberedPedigree(rows);
  std::vector<animal_number> set;
  for (const std::size_t row : offspring) set.push_back(pedigree.number(row));
  const gene_drop_result drop = geneDrop(pedigree, set, {.runs = 10'000, .seed = 7, .threads = 2});
  ASSERT_EQ(drop.retention.size(), 5U);
  for (std::size_t k = 1; k <= 4; ++k) {
    // The two genes of a founder: the variance of their mean is below that of one.
    const double kept = 1 - std::pow(2.0, -static_cast<double>(k));
    EXPECT_NEAR(drop.retention[k], kept, 4 * std::sqrt(kept * (1 - kept) / 10'000)) << k;
    const double lost = 0;
    EXPECT_EQ(drop.lost[k], lost) << "one gene at least is passed on";
  }
  double mean = 0;
  for (const double diversity : drop.diversity) mean += diversity / 10'000;
  EXPECT_NEAR(mean, diversityOf(pedigree, inbreedingOf(pedigree), set).gene_diversity, 2e-3);
  // Of an only child's genes the half from its own parent is unique; the other half has nine more chances of a copy.
  EXPECT_NEAR(drop.uniqueness[0], 0.5 + 0.5 * std::pow(0.5, 9), 4 * std::sqrt(0.25 / 10'000));
}

TEST(GeneDrop, IsTheSameForAnyThreadsAndAnotherForAnotherSeed) {
  const GeneticPedigree pedigree = numberedPedigree(randomRows({200, 0.1, 0.1}, 5));
  const std::vector<animal_number> set = numbersOf(pedigree, 200);
  const gene_drop_result one = geneDrop(pedigree, set, {.runs = 300, .seed = 3});
  const gene_drop_result three = geneDrop(pedigree, set, {.runs = 300, .seed = 3, .threads = 3});
  EXPECT_EQ(one.diversity, three.diversity);
  EXPECT_EQ(one.retention, three.retention);
  EXPECT_EQ(one.uniqueness, three.uniqueness);
  EXPECT_NE(one.diversity, geneDrop(pedigree, set, {.runs = 300, .seed = 4}).diversity);
}

TEST(GeneDrop, GroupsAndMissingParentsPassOnWhatTheyShould) {
  const pedigree_rows rows = randomRows({40, 0.2, 0.2}, 8);
  const GeneticPedigree pedigree = numberedPedigree(rows);
  const std::vector<animal_number> set = numbersOf(pedigree, 40);
  const gene_drop_result drop = geneDrop(pedigree, set, {.runs = 40'000, .seed = 2, .threads = 2});
  const genetic_diversity expected = diversityOf(pedigree, inbreedingOf(pedigree), set);
  double mean = 0;
  double squares = 0;
  for (const double diversity : drop.diversity) {
    mean += diversity / 40'000;
    squares += diversity * diversity / 40'000;
  }
  EXPECT_NEAR(mean, expected.gene_diversity, 4 * std::sqrt((squares - mean * mean) / 40'000));
  EXPECT_GT(founderGenomesByFrequency(drop), expected.founder_genomes);  // Jensen's inequality
  const std::vector<double> targets = targetShares(drop);
  EXPECT_LE(std::accumulate(targets.begin(), targets.end(), 0.0), 1 + 1e-12);
  EXPECT_GE(potentialDiversity(drop), expected.gene_diversity);
}

// By definition on a small pedigree: two founders of one mating with two offspring.
TEST(Diversity, ThreeFounderGenomeEquivalents) {
  const GeneticPedigree pedigree = numberedPedigree({{NONE, NONE, 0, 0}, {NONE, NONE, 1, 1}, {}, {}});
  const std::vector<animal_number> sibs{pedigree.number(2), pedigree.number(3)};
  const genetic_diversity found = diversityOf(pedigree, inbreedingOf(pedigree), sibs);
  EXPECT_DOUBLE_EQ(found.mean_kinship, 0.375);
  EXPECT_DOUBLE_EQ(found.founder_genomes, 1 / 0.75);
  EXPECT_DOUBLE_EQ(found.founder_diversity, 0.75);
  const gene_drop_result drop = geneDrop(pedigree, sibs, {.runs = 40'000, .seed = 11});
  // Retention 3/4 each: 1 / (2 x (1/4) / (3/4)) = 1.5. The four genes take (2,2), (2,1,1) or (1,1,1,1)
  // copies in 1/4, 1/2 and 1/4 of the drops: the mean of 1, 4/3 and 2 is 17/12.
  EXPECT_NEAR(founderGenomesByRetention(drop), 1.5, 0.02);
  EXPECT_NEAR(founderGenomesByFrequency(drop), 17.0 / 12, 0.01);
}

TEST(Diversity, OfNobodyIsNotANumber) {
  const GeneticPedigree pedigree = numberedPedigree({{NONE}, {NONE}, {}, {}});
  const genetic_diversity none = diversityOf(pedigree, inbreedingOf(pedigree), {});
  EXPECT_TRUE(std::isnan(none.mean_kinship) && std::isnan(none.highest_inbreeding) &&
              std::isnan(none.effective_founders) && std::isnan(none.known_share));
  EXPECT_TRUE(std::isnan(effectiveAncestors(pedigree, {}).number));
  EXPECT_TRUE(geneDrop(pedigree, {}).retention.empty());
  const std::vector<animal_number> one{0};
  EXPECT_DOUBLE_EQ(diversityOf(pedigree, inbreedingOf(pedigree), one).founder_genomes, 1);
}

// The ancestors of a zoo's animals count for it; unrelated animals elsewhere change nothing.
TEST(Diversity, KeepsTheAncestorsOfAView) {
  const pedigree_rows zoo = randomRows({60, 0.05, 0}, 21);
  pedigree_rows world = zoo;
  for (animal_number row = 0; row < 60; ++row) {
    const auto moved = [](animal_number parent) { return parent < 60 ? parent + 60 : parent; };
    world.sires.push_back(moved(zoo.sires[row]));
    world.dams.push_back(moved(zoo.dams[row]));
  }
  pedigree_rows without_ancestors = zoo;
  for (std::size_t row = 0; row < 60; ++row) {
    if (zoo.sires[row] < 40) without_ancestors.sires[row] = NONE;
    if (zoo.dams[row] < 40) without_ancestors.dams[row] = NONE;
  }
  const auto diversity = [](const pedigree_rows& rows) {
    const GeneticPedigree pedigree = numberedPedigree(rows);
    std::vector<animal_number> living;
    for (std::size_t row = 40; row < 60; ++row) living.push_back(pedigree.number(row));
    return diversityOf(pedigree, inbreedingOf(pedigree), living).gene_diversity;
  };
  EXPECT_DOUBLE_EQ(diversity(zoo), diversity(world));
  EXPECT_GT(diversity(without_ancestors), diversity(zoo) + 0.01);
}

}  // namespace
}  // namespace spx
