// Inbreeding and kinship against the tabular method, closed forms and worked examples.
#include "spx/genetics/kinship.h"

#include <cmath>

#include <gtest/gtest.h>

#include "spx/genetics/common_ancestors.h"
#include "spx/genetics/diversity.h"
#include "spx/genetics/founders.h"

#include "tests/genetics/random_pedigree.h"

namespace spx {
namespace {

using namespace genetics_test;

constexpr double TOLERANCE = 1e-12;
constexpr animal_number NONE = UNKNOWN_SOURCE;

constexpr pedigree_kind KINDS[] = {
    {1}, {2}, {7, 0.1, 0}, {60, 0.3, 0.1}, {150, 0.05, 0.05}, {300, 0.02, 0}, {300, 0.1, 0.1}, {300, 0.02, 0, true},
};

struct numbered {
  pedigree_rows rows;  ///< parents before offspring
  matrix a;
  GeneticPedigree pedigree;            ///< of the shuffled rows
  std::vector<animal_number> numbers;  ///< by row of `rows`
  relationship_terms terms;

  numbered(const pedigree_kind& kind, std::uint32_t seed, unsigned threads = 1)
      : rows(randomRows(kind, seed)), a(tabular(rows)) {
    std::vector<animal_number> places;
    EXPECT_TRUE(pedigree.assign(shuffled(rows, seed, places)).empty());
    for (const animal_number place : places) numbers.push_back(pedigree.number(place));
    terms = inbreedingOf(pedigree, threads);
  }
};

template <class Check>
void forEachPedigree(Check check) {
  for (const pedigree_kind& kind : KINDS) {
    for (std::uint32_t seed = 1; seed <= 2; ++seed) {
      SCOPED_TRACE(testing::Message() << kind.animals << " animals, seed " << seed);
      check(numbered(kind, seed));
    }
  }
}

TEST(Inbreeding, IsThatOfTheTabularMethod) {
  forEachPedigree([](const numbered& drawn) {
    for (std::size_t row = 0; row < drawn.a.size(); ++row) {
      ASSERT_NEAR(1 + drawn.terms.inbreeding[drawn.numbers[row]], drawn.a[row][row], TOLERANCE) << row;
    }
  });
}

TEST(Inbreeding, ThreadsChangeNoBit) {
  const numbered one({300, 0.02, 0.05}, 9, 1);
  const numbered three({300, 0.02, 0.05}, 9, 3);
  EXPECT_EQ(one.terms.inbreeding, three.terms.inbreeding);
  EXPECT_EQ(one.terms.sampling, three.terms.sampling);
}

TEST(Inbreeding, BySourcesIsThatOfTheTabularMethodAndAddsUp) {
  forEachPedigree([](const numbered& drawn) {
    const std::vector<double> known = knownShares(drawn.pedigree);
    std::vector<double> unknown = known;
    for (double& share : unknown) share = 1 - share;
    const relationship_terms by_known = inbreedingBySources(drawn.pedigree, known);
    const relationship_terms by_unknown = inbreedingBySources(drawn.pedigree, unknown);
    std::vector<double> shares;
    for (const animal_number number : drawn.numbers) shares.push_back(known[number]);
    const matrix partial = tabular(drawn.rows, shares);
    for (std::size_t row = 0; row < shares.size(); ++row) {
      const animal_number number = drawn.numbers[row];
      ASSERT_NEAR(shares[row] + by_known.inbreeding[number], partial[row][row], TOLERANCE);
      ASSERT_NEAR(by_known.inbreeding[number] + by_unknown.inbreeding[number], drawn.terms.inbreeding[number],
                  TOLERANCE);
    }
  });
}

TEST(Kinship, ProductsBlocksAndMatricesAreThoseOfTheTabularMethod) {
  forEachPedigree([](const numbered& drawn) {
    const std::size_t animals = drawn.a.size();
    const std::vector<double> means = meanKinships(drawn.pedigree, drawn.terms, drawn.numbers);
    const auto block = kinshipBlock(drawn.pedigree, drawn.terms, drawn.numbers, drawn.numbers, 2);
    KinshipMatrix triangle;
    ASSERT_TRUE(triangle.compute(drawn.pedigree, drawn.terms, drawn.numbers));
    const std::vector<double> with_last = kinshipWith(drawn.pedigree, drawn.terms, drawn.numbers.back());
    for (std::size_t row = 0; row < animals; ++row) {
      double sum = 0;
      for (std::size_t column = 0; column < animals; ++column) {
        const double expected = drawn.a[row][column] / 2;
        ASSERT_NEAR(block[row * animals + column], expected, TOLERANCE);
        ASSERT_NEAR(triangle.at(row, column), expected, TOLERANCE);
        sum += expected;
      }
      ASSERT_NEAR(means[drawn.numbers[row]], sum / static_cast<double>(animals), TOLERANCE);
      ASSERT_NEAR(with_last[drawn.numbers[row]], drawn.a[row].back() / 2, TOLERANCE);
    }
  });
}

TEST(Kinship, CommonAncestorsAddUpToIt) {
  forEachPedigree([](const numbered& drawn) {
    const animal_number a = drawn.numbers.front();
    const animal_number b = drawn.numbers.back();
    for (const auto& [x, y] : {std::pair{a, b}, {b, drawn.numbers[drawn.numbers.size() / 2]}, {b, b}}) {
      double sum = 0;
      for (const common_ancestor& shared : commonAncestors(drawn.pedigree, drawn.terms, x, y)) {
        sum += shared.kinship;
      }
      EXPECT_NEAR(sum, kinship(drawn.pedigree, drawn.terms, x, y), TOLERANCE);
    }
  });
}

TEST(Kinship, OfTwoSetsIsTheMeanOfTheirPairs) {
  const numbered drawn({120, 0.1, 0.05}, 3);
  const std::span<const animal_number> all(drawn.numbers);
  double sum = 0;
  for (std::size_t row = 0; row < 30; ++row) {
    for (std::size_t column = 80; column < 120; ++column) sum += drawn.a[row][column] / 2;
  }
  EXPECT_NEAR(meanKinshipBetween(drawn.pedigree, drawn.terms, all.first(30), all.subspan(80)), sum / (30 * 40),
              TOLERANCE);
  EXPECT_TRUE(std::isnan(meanKinshipBetween(drawn.pedigree, drawn.terms, all, {})));
}

TEST(Kinship, KnownPartEqualsTheWholeOfAKnownPedigree) {
  const numbered whole({200, 0, 0}, 4);
  const known_kinships known = knownKinships(whole.pedigree, whole.numbers);
  const std::vector<double> means = meanKinships(whole.pedigree, whole.terms, whole.numbers);
  EXPECT_NEAR(known.mean, meanKinshipBetween(whole.pedigree, whole.terms, whole.numbers, whole.numbers), TOLERANCE);
  for (const animal_number number : whole.numbers) {
    EXPECT_NEAR(known.of_animals[number], means[number], TOLERANCE);
  }
}

struct worked_example {
  const char* what;
  std::vector<animal_number> sires;
  std::vector<animal_number> dams;
  std::vector<double> inbreeding;  ///< by row
};

const worked_example EXAMPLES[] = {
    {"full sibs", {NONE, NONE, 0, 0, 2}, {NONE, NONE, 1, 1, 3}, {0, 0, 0, 0, 0.25}},
    {"half sibs", {NONE, NONE, NONE, 0, 0, 3}, {NONE, NONE, NONE, 1, 2, 4}, {0, 0, 0, 0, 0, 0.125}},
    {"parent and offspring, twice", {NONE, NONE, 0, 0, 0}, {NONE, NONE, 1, 2, 3}, {0, 0, 0, 0.25, 0.375}},
    {"selfing", {NONE, 0, 1, 2}, {NONE, 0, 1, 2}, {0, 0.5, 0.75, 0.875}},
    {"first cousins",
     {NONE, NONE, 0, 0, NONE, NONE, 2, 4, 6},
     {NONE, NONE, 1, 1, NONE, NONE, 5, 3, 7},
     {0, 0, 0, 0, 0, 0, 0, 0, 0.0625}},
    {"double first cousins",
     {NONE, NONE, NONE, NONE, 0, 0, 2, 2, 4, 5, 8},
     {NONE, NONE, NONE, NONE, 1, 1, 3, 3, 6, 7, 9},
     {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.125}},
    // The example of Henderson (1976), as Mrode (2005) quotes it.
    {"half-known parents", {NONE, NONE, 0, 0, 3, 4}, {NONE, NONE, 1, NONE, 2, 1}, {0, 0, 0, 0, 0.125, 0.125}},
};

TEST(Inbreeding, WorkedExamples) {
  for (const worked_example& example : EXAMPLES) {
    SCOPED_TRACE(example.what);
    GeneticPedigree pedigree;
    ASSERT_TRUE(pedigree.assign({example.sires, example.dams, {}, {}}).empty());
    const relationship_terms terms = inbreedingOf(pedigree);
    for (std::size_t row = 0; row < example.sires.size(); ++row) {
      EXPECT_DOUBLE_EQ(terms.inbreeding[pedigree.number(row)], example.inbreeding[row]) << row;
    }
  }
}

/// Generations of `width` animals; mates(place) names the parents' places in the generation before.
template <class Mates>
double inbreedingAfter(std::size_t generations, animal_number width, Mates mates) {
  pedigree_rows rows;
  rows.sires.assign(width, NONE);
  rows.dams.assign(width, NONE);
  for (animal_number generation = 1; generation <= generations; ++generation) {
    for (animal_number place = 0; place < width; ++place) {
      const auto [sire, dam] = mates(place);
      rows.sires.push_back((generation - 1) * width + sire);
      rows.dams.push_back((generation - 1) * width + dam);
    }
  }
  GeneticPedigree pedigree;
  pedigree.assign(rows);
  return inbreedingOf(pedigree).inbreeding[pedigree.number(generations * width)];
}

TEST(Inbreeding, ClosedFormsOverGenerations) {
  // Sib mating: F_t = (1 + 2 F_t-1 + F_t-2) / 4, Wright 1921.
  double before = 0;
  double sibs = 0;
  for (std::size_t generation = 2; generation <= 30; ++generation) {
    const double next = (1 + 2 * sibs + before) / 4;
    before = sibs;
    sibs = next;
    using pair = std::pair<animal_number, animal_number>;
    EXPECT_NEAR(inbreedingAfter(generation, 2, [](animal_number) { return pair{0, 1}; }), sibs, TOLERANCE);
  }
  // Circular mating, each animal with its two neighbours: the kinship of two animals depends only on
  // their distance.
  constexpr std::size_t WIDTH = 6;
  std::vector<double> by_distance(WIDTH);
  by_distance[0] = 0.5;
  double inbreeding = 0;
  for (std::size_t generation = 1; generation <= 12; ++generation) {
    std::vector<double> next(WIDTH);
    const auto at = [&](std::size_t distance) { return by_distance[distance % WIDTH]; };
    inbreeding = at(1);
    for (std::size_t distance = 0; distance < WIDTH; ++distance) {
      next[distance] = at(distance) / 2 + (at(distance + 1) + at(distance + WIDTH - 1)) / 4;
    }
    next[0] = (1 + inbreeding) / 2;
    by_distance = next;
    using pair = std::pair<animal_number, animal_number>;
    EXPECT_NEAR(inbreedingAfter(generation, WIDTH,
                                [](animal_number place) {
                                  return pair{place, (place + 1) % WIDTH};
                                }),
                inbreeding, TOLERANCE);
  }
}

TEST(Inbreeding, AncestralFollowsBallou) {
  // Sib mating from two founders: F is 0, 0, 1/4, 3/8; fa = fa' + (1 - fa') F' of the generation before.
  const pedigree_rows rows{{NONE, NONE, 0, 0, 2, 2, 4, 4, 6}, {NONE, NONE, 1, 1, 3, 3, 5, 5, 7}, {}, {}};
  GeneticPedigree pedigree;
  pedigree.assign(rows);
  const std::vector<double> ancestral = ancestralInbreeding(pedigree, inbreedingOf(pedigree).inbreeding);
  const std::pair<std::size_t, double> expected[] = {{2, 0}, {4, 0}, {6, 0.25}, {8, 0.25 + 0.75 * 0.375}};
  for (const auto& [row, value] : expected) {
    EXPECT_DOUBLE_EQ(ancestral[pedigree.number(row)], value) << row;
  }
}

TEST(GeneticPedigree, NamesACycleInOrder) {
  const struct {
    std::vector<animal_number> sires;
    std::vector<animal_number> dams;
    std::vector<std::vector<possible_parent>> groups;
    std::vector<std::size_t> cycle;
  } cases[] = {
      {{NONE, 1, 0}, {NONE, NONE, 1}, {}, {1}},
      {{NONE, 3, 1, 2}, {NONE, 0, 0, 0}, {}, {1, 3, 2}},
      {{FIRST_GROUP, 0}, {NONE, NONE}, {{{1, 0.5}}}, {0, 1}},
      {{1, 1}, {0, NONE}, {}, {1}},
  };
  for (const auto& [sires, dams, groups, cycle] : cases) {
    GeneticPedigree pedigree;
    EXPECT_EQ(pedigree.assign({sires, dams, groups, {}}), cycle);
    EXPECT_EQ(pedigree.size(), 0U);
  }
}

TEST(GeneticPedigree, SurvivesAHundredThousandGenerations) {
  constexpr animal_number GENERATIONS = 100'000;
  pedigree_rows rows;
  for (animal_number row = 0; row < GENERATIONS; ++row) {
    rows.sires.push_back(row + 1 == GENERATIONS ? NONE : row + 1);
    rows.dams.push_back(NONE);
  }
  GeneticPedigree pedigree;
  ASSERT_TRUE(pedigree.assign(rows).empty());
  EXPECT_EQ(pedigree.number(0), GENERATIONS - 1);
  EXPECT_EQ(inbreedingOf(pedigree).inbreeding[pedigree.number(0)], 0);
}

TEST(GeneticPedigree, AncestorsOfKeepsTheInbreedingOfItsAnimals) {
  const numbered drawn({300, 0.1, 0.1}, 12);
  const std::vector<animal_number> chosen(drawn.numbers.end() - 12, drawn.numbers.end());
  const GeneticPedigree part = drawn.pedigree.ancestorsOf(chosen);
  EXPECT_LT(part.size(), drawn.pedigree.size());
  const relationship_terms terms = inbreedingOf(part);
  for (const animal_number animal : chosen) {
    EXPECT_EQ(part.row(part.number(animal)), animal);
    EXPECT_NEAR(terms.inbreeding[part.number(animal)], drawn.terms.inbreeding[animal], TOLERANCE);
  }
}

}  // namespace
}  // namespace spx
