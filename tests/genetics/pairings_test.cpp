#include "spx/genetics/pairings.h"

#include <gtest/gtest.h>

#include "spx/genetics/diversity.h"

#include "tests/genetics/random_pedigree.h"

namespace spx {
namespace {

using namespace genetics_test;

struct Herd {
  pedigree_rows rows = randomRows({50, 0.1, 0, true}, 31);
  GeneticPedigree pedigree;
  relationship_terms terms;
  std::vector<animal_number> population;
  std::vector<animal_number> males;
  std::vector<animal_number> females;

  Herd() {
    pedigree.assign(rows);
    terms = inbreedingOf(pedigree);
    for (std::size_t row = 30; row < 50; ++row) {
      population.push_back(pedigree.number(row));
      (row % 2 == 0 ? males : females).push_back(population.back());
    }
  }

  /// The gene diversity of the population after each of these pairs has had an offspring.
  double diversityWith(const std::vector<picked_pair>& picks, double* last_inbreeding = nullptr) const {
    pedigree_rows grown = rows;
    for (const picked_pair& pick : picks) {
      grown.sires.push_back(static_cast<animal_number>(pedigree.row(pick.pair.sire)));
      grown.dams.push_back(static_cast<animal_number>(pedigree.row(pick.pair.dam)));
    }
    GeneticPedigree numbered;
    numbered.assign(grown);
    std::vector<animal_number> set;
    for (std::size_t row = 30; row < grown.sires.size(); ++row) set.push_back(numbered.number(row));
    const relationship_terms grown_terms = inbreedingOf(numbered);
    if (last_inbreeding != nullptr) *last_inbreeding = grown_terms.inbreeding[set.back()];
    return diversityOf(numbered, grown_terms, set).gene_diversity;
  }
};

TEST(Pairings, SayWhatAnOffspringWouldChange) {
  const Herd herd;
  const auto pairs = rankPairs(herd.pedigree, herd.terms, herd.population, herd.males, herd.females, 2);
  ASSERT_EQ(pairs.size(), 100U);
  const double now = diversityOf(herd.pedigree, herd.terms, herd.population).gene_diversity;
  for (const std::size_t place : {0, 37, 99}) {
    double inbreeding = 0;
    EXPECT_NEAR(herd.diversityWith({{pairs[place], 0}}, &inbreeding), now + pairs[place].diversity_change, 1e-12);
    EXPECT_NEAR(inbreeding, pairs[place].offspring_inbreeding, 1e-12);
  }
  EXPECT_TRUE(std::is_sorted(pairs.rbegin(), pairs.rend(),
                             [](const auto& a, const auto& b) { return a.diversity_change < b.diversity_change; }));
  EXPECT_TRUE(rankPairs(herd.pedigree, herd.terms, {}, herd.males, herd.females).empty());
}

// Over known genes, an offspring adds one more row to the definition.
TEST(Pairings, OverKnownGenesMatchTheGrownPopulation) {
  const Herd herd;
  const double now = 1 - knownKinships(herd.pedigree, herd.population).mean;
  const auto pairs = rankPairs(herd.pedigree, herd.terms, herd.population, herd.males, herd.females, 1, GENES::KNOWN);
  const std::vector<double> means = knownKinships(herd.pedigree, herd.population).of_animals;
  for (const std::size_t place : {0, 20, 99}) {
    const breeding_pair& pair = pairs[place];
    pedigree_rows grown = herd.rows;
    grown.sires.push_back(static_cast<animal_number>(herd.pedigree.row(pair.sire)));
    grown.dams.push_back(static_cast<animal_number>(herd.pedigree.row(pair.dam)));
    GeneticPedigree numbered;
    numbered.assign(grown);
    std::vector<animal_number> set;
    for (std::size_t row = 30; row < grown.sires.size(); ++row) set.push_back(numbered.number(row));
    EXPECT_NEAR(1 - knownKinships(numbered, set).mean, now + pair.diversity_change, 1e-12);
    EXPECT_NEAR(knownInbreeding(numbered)[set.back()], pair.offspring_inbreeding, 1e-12);
    EXPECT_NEAR((means[pair.sire] + means[pair.dam]) / 2, pair.mean_kinship, 1e-12);
  }
  const auto picks = pickPairs(herd.pedigree, herd.terms, herd.population, herd.males, herd.females,
                               {.pairs = 3, .most_kinship = 0.2, .genes = GENES::KNOWN});
  ASSERT_EQ(picks.size(), 3U);
  EXPECT_NEAR(picks[0].diversity, now + picks[0].pair.diversity_change, 1e-12);
  EXPECT_LE(picks[0].pair.offspring_inbreeding, 0.2);
  const auto all = rankPairs(herd.pedigree, herd.terms, herd.population, herd.males, herd.females);
  EXPECT_NE(all.front().diversity_change, pairs.front().diversity_change);
}

TEST(Pairings, PicksReachTheirDiversityWithinTheLimits) {
  const Herd herd;
  const auto pick = [&](const pick_options& options) {
    return pickPairs(herd.pedigree, herd.terms, herd.population, herd.males, herd.females, options);
  };
  const std::vector<picked_pair> dynamic = pick({.pairs = 6, .most_per_male = 2});
  ASSERT_EQ(dynamic.size(), 6U);
  EXPECT_NEAR(dynamic.back().diversity, herd.diversityWith(dynamic), 1e-12);
  const std::vector<picked_pair> fixed = pick({.pairs = 6, .most_per_male = 2, .is_dynamic = false});
  EXPECT_NEAR(fixed.back().diversity, herd.diversityWith(fixed), 1e-12);
  EXPECT_EQ(fixed.front().pair.sire, dynamic.front().pair.sire);
  EXPECT_GE(dynamic.back().diversity, fixed.back().diversity - 1e-12);
  for (const picked_pair& chosen : pick({.pairs = 100, .most_kinship = 0.05})) {
    EXPECT_LE(chosen.pair.offspring_inbreeding, 0.05);
  }
  EXPECT_EQ(pick({.pairs = 100}).size(), 10U) << "each female once";
}

}  // namespace
}  // namespace spx
