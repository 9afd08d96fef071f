#include "spx/demography/life_table.h"

#include <cmath>

#include <gtest/gtest.h>

#include "spx/demography/births.h"
#include "spx/demography/growth.h"
#include "spx/demography/projection.h"
#include "spx/demography/reproduction.h"

#include "tests/demography/life_lines.h"
#include "tests/support/temporary_home.h"

namespace spx {
namespace {

constexpr double YEAR = 365.25;

// A herd with its ages in years on the scale; "x" dies, ">" is watched no longer, "*" bears.
//
//          0    1    2    3    4    5
//   1 f    =====*====*=x                   bears 3 and 6
//   2 f    ==========*==*======>           bears 4 and 5; there on 2004-07-01
//   3 f    =x                              59 days old
//   4 f    =======>                        departs
//   5 m    ====>
//   6 ?    ============>
//   7 f              ==========x           caught; dies at the very end of its fourth year
class HerdTest : public TemporaryHome {
 protected:
  HerdTest() {
    view.origin = BIRTH_TYPE::ALL;
    view.start_date = dayOf("1990-01-01");
    view.end_date = view.monitor_date = dayOf("2004-07-01");
    view.prorating = true;
    view.handle_unknown = HANDLE_UNKNOWN::IGNORE;
    Animals.clearStudbook();
    Animals.initialize(10);
    add("b1 2000-01-01 d1 2002-07-01", "1", SEX::FEMALE, "");
    add("b1 2000-01-01", "2", SEX::FEMALE, "");
    add("b1 2001-01-01 d1 2001-03-01", "3", SEX::FEMALE, "1");
    add("b1 2002-07-01 o9 2003-12-31", "4", SEX::FEMALE, "2");
    add("b1 2003-07-01", "5", SEX::MALE, "2");
    add("b1 2002-01-01", "6", SEX::UNKNOWN, "1");
    add("B9 2000-01-01 w1 2002-07-01 d1 2004-01-01", "7", SEX::FEMALE, "");
    Animals.populationPedigree();
    takeOutput();
  }

  static void add(const char* line, const char* id, SEX sex, const std::string& dam) {
    master_data animal = lifeOf(line, id, sex);
    if (!dam.empty()) animal.dam_id = dam;
    Animals.addMaster(animal);
    Animals.index.clear();
  }

  life_tallies tallies(std::size_t samples = 1) const {
    return lifeTallies(Animals, view, {}, ageClasses(view), 0, samples);
  }

  DataFilter view;
};

TEST_F(HerdTest, CountsRisksDeathsAndBirths) {
  const life_tallies data = tallies();
  EXPECT_EQ(data.in_view, 7U);
  EXPECT_EQ(data.counted, 6U);
  EXPECT_EQ(data.left_out[LEFT_OUT::UNKNOWN_SEX], 1U);
  EXPECT_EQ(data.placed_births, 4U);
  EXPECT_EQ(data.unplaced_births, 2U);  // 1 and 2 have no parents
  const auto females = lifeTable(data.of(0, SEX::FEMALE), data.classes, SEX::FEMALE, true);
  struct row {
    double at_risk, exposure, deaths, q, l, births;
  };
  const row ROWS[] = {{4, 3 * YEAR + 59, 1, 0.25, 1, 0},
                      {2 + 182.75 / YEAR, 2 * YEAR + 182.75, 0, 0, 0.75, 1},
                      {2 + 183.75 / YEAR, 181.5 + YEAR + 183.75, 1, 1 / (2 + 183.75 / YEAR), 0.75, 1},
                      {2, 2 * YEAR, 1, 0.5, 0.75 * (1 - 1 / (2 + 183.75 / YEAR)), 0},
                      {182 / YEAR, 182, 0, 0, 0.375 * (1 - 1 / (2 + 183.75 / YEAR)), 0}};
  ASSERT_EQ(females.size(), std::size(ROWS));
  for (std::size_t at = 0; at < females.size(); ++at) {
    SCOPED_TRACE(at);
    EXPECT_NEAR(females[at].at_risk, ROWS[at].at_risk, 1e-12);
    EXPECT_NEAR(females[at].exposure, ROWS[at].exposure, 1e-9);
    EXPECT_EQ(females[at].deaths, ROWS[at].deaths);
    EXPECT_NEAR(females[at].q, ROWS[at].q, 1e-12);
    EXPECT_NEAR(females[at].l, ROWS[at].l, 1e-12);
    EXPECT_EQ(females[at].births, ROWS[at].births);
  }
  EXPECT_NEAR(females[2].m, 0.5, 1e-12);
  EXPECT_NEAR(females[0].L, 0.875 * YEAR, 1e-9);
  EXPECT_NEAR(females[3].e, (females[3].L + females[4].L) / females[3].l, 1e-9);
}

TEST_F(HerdTest, ObeysTheView) {
  const auto female = [this](std::size_t at) { return tallies().of(0, SEX::FEMALE)[at]; };
  view.prorating = false;
  const double whole[] = {4, 3, 3, 2, 1};
  for (std::size_t at = 0; at < 5; ++at) EXPECT_EQ(female(at).at_risk, whole[at]);
  view.prorating = true;
  view.left_truncated = false;  // 7 from its birth
  EXPECT_NEAR(female(2).at_risk, 3, 1e-12);
  view.left_truncated = true;
  view.right_censored = false;  // 1, 3 and 7 only
  EXPECT_EQ(tallies().left_out[LEFT_OUT::NOT_DEAD], 4U);
  EXPECT_EQ(female(1).at_risk, 1);
  view.right_censored = true;
  view.handle_unknown = HANDLE_UNKNOWN::EQUAL;
  EXPECT_NEAR(female(0).at_risk, 4.5, 1e-12);
  EXPECT_EQ(female(1).daughters, 1);
  EXPECT_EQ(female(2).daughters, 1.5);  // 4 and half of 6
  EXPECT_EQ(female(1).offspring, 1);    // 3, on the mother's day 366
  EXPECT_EQ(female(2).offspring, 2);    // 4, and 6 on day 731
  EXPECT_EQ(tallies().counted, 7U);
  view.start_date = dayOf("2002-07-01");  // nobody is watched before that day
  EXPECT_EQ(female(1).deaths, 0);
  EXPECT_EQ(tallies().left_out[LEFT_OUT::OUTSIDE_PERIOD], 2U);  // 3, and 1, which dies on the first day
}

TEST_F(HerdTest, HoldsTheIdentities) {
  view.handle_unknown = HANDLE_UNKNOWN::EQUAL;
  const life_tallies data = tallies();
  for (const bool same_sex : {true, false}) {
    const auto table = lifeTableOfAll(data, same_sex);
    double l = 1;
    for (const life_table_row& row : table) {
      EXPECT_NEAR(row.l, l, 1e-12);
      l *= 1 - row.q;
    }
    for (const PARENT_AGE age : {PARENT_AGE::MIDDLE, PARENT_AGE::START}) {
      const growth_rates growth = growthRates(table, age);
      double euler = 0;
      double stable = 0;
      for (std::size_t at = 0; at < table.size(); ++at) {
        const bool middle = age == PARENT_AGE::MIDDLE;
        euler += table[at].m * (middle ? table[at].L / YEAR : table[at].l) *
                 std::pow(growth.lambda, -(static_cast<double>(at) + (middle ? 0.5 : 0)));
        stable += growth.stable_age[at];
      }
      EXPECT_NEAR(euler, 1, 1e-10);
      EXPECT_NEAR(stable, 1, 1e-12);
      EXPECT_NEAR(growth.reproductive_value[0], 1, 1e-10);
    }
  }
  // The samples divide the animals: together they equal the whole.
  const life_tallies parts = tallies(3);
  EXPECT_EQ(parts.samples, 3U);
  EXPECT_NEAR(joinSamples(parts).of(0, SEX::FEMALE)[0].exposure, data.of(0, SEX::FEMALE)[0].exposure, 1e-9);
}

// A worked example of Gotelli (1995), "A Primer of Ecology": l = 1, 0.8, 0.4, 0.1 and b = 0, 2, 3, 1.
std::vector<life_table_row> primer() {
  std::vector<life_table_row> table;
  const double l[] = {1, 0.8, 0.4, 0.1};
  const double m[] = {0, 2, 3, 1};
  for (int age = 0; age < 4; ++age) {
    life_table_row row;
    row.age = age * YEAR;
    row.width = YEAR;
    row.l = l[age];
    row.m = m[age];
    row.p = age < 3 ? l[age + 1] / l[age] : 0;
    row.L = (l[age] + row.p * l[age]) / 2 * YEAR;
    table.push_back(row);
  }
  return table;
}

TEST(Growth, GivesThePublishedValues) {
  const growth_rates growth = growthRates(primer(), PARENT_AGE::START);
  EXPECT_NEAR(growth.r0, 2.9, 1e-12);
  EXPECT_NEAR(growth.generation_time / YEAR, 1.483, 5e-4);
  EXPECT_NEAR(growth.r * YEAR, 0.776, 5e-4);
  EXPECT_NEAR(growth.reproductive_value[3], 1, 1e-9);  // an animal that has one more offspring to expect
}

TEST(Growth, WithoutOffspringThereIsNone) {
  auto table = primer();
  for (life_table_row& row : table) row.m = 0;
  const growth_rates growth = growthRates(table, PARENT_AGE::MIDDLE);
  EXPECT_EQ(growth.r0, 0);
  EXPECT_TRUE(std::isnan(growth.lambda));
}

TEST_F(HerdTest, BootstrapIsRepeatable) {
  const life_tallies data = tallies(100);
  EXPECT_EQ(data.samples, data.counted);
  const auto run = [&data](std::uint32_t seed) {
    return bootstrapGrowth(data, SEX::FEMALE, true, PARENT_AGE::MIDDLE, 200, seed);
  };
  EXPECT_EQ(run(7).lambda.lower, run(7).lambda.lower);
  EXPECT_EQ(run(7).runs + run(7).failed, 200U);
  EXPECT_LE(run(7).r0.lower, run(7).r0.upper);
}

step_rates leslie() {
  return {{0.5, 0.8, 0.6}, {0.4, 0.7, 0.6}, {0, 1.2, 0.9}, {0, 1.1, 1.0}};
}

TEST(Projection, GrowsByTheEigenvalueInTheEnd) {
  const step_rates rates = leslie();
  const auto years = projectExpected({{10, 0, 0}, {0, 5, 0}}, rates, 200);
  EXPECT_NEAR(years[1].females[1], 5, 1e-12);
  EXPECT_NEAR(years[2].females[0], 6, 1e-12);
  EXPECT_NEAR(years[2].males[2], 3.5 * 0.6, 1e-12);
  EXPECT_NEAR(years[200].females[2] / years[199].females[2], leslieLambda(rates), 1e-12);
  EXPECT_EQ(leslieLambda({{0.5}, {0.5}, {0}, {0}}), 0);
}

TEST(Projection, ChanceSpreadsAroundTheExpectation) {
  const class_counts start{{20, 10, 10}, {20, 10, 10}};
  const auto expected = projectExpected(start, leslie(), 5);
  const auto steps = projectChance(start, leslie(), 5, {4000, 11, 80});
  ASSERT_EQ(steps.size(), 6U);
  EXPECT_EQ(steps[0].lower, 80);
  EXPECT_EQ(steps[0].below, 0);
  for (std::size_t at = 1; at < 6; ++at) {
    const double error = (steps[at].upper - steps[at].lower) / 4 / std::sqrt(4000.0);
    EXPECT_NEAR(steps[at].mean, expected[at].total(), 4 * error);
  }
  EXPECT_EQ(projectChance(start, leslie(), 5, {50, 3, 0})[5].mean,
            projectChance(start, leslie(), 5, {50, 3, 0})[5].mean);
  const auto shared = projectChance({{2.5, 0.3, 1.7}, {0.5, 3.75, 0.25}}, leslie(), 0, {500, 3, 0});
  EXPECT_EQ(shared[0].lower, 9) << "nine animals are nine, however those of unknown sex are shared";
  EXPECT_EQ(shared[0].upper, 9);
  EXPECT_EQ(projectChance({{5, 5, 5}, {0, 0, 0}}, leslie(), 1, {200, 3, 0})[1].extinct, 1);  // no males, no births
}

TEST_F(HerdTest, ProjectionStartsWithEveryAnimal) {
  add("a1 2003-01-01", "8", SEX::FEMALE, "");  // unknown age
  view.handle_unknown = HANDLE_UNKNOWN::EQUAL;
  const age_structure structure = ageStructure(Presence(Animals.records, view, {}), view, view.end_date);
  EXPECT_NEAR(startingNumbers(structure, 3).total(), 4, 1e-12);  // 2, 5, 6 and 8
  const double births = birthsToKeep(100, tallies());
  const auto all = lifeTable(tallies().of(0, SEX::FEMALE), ageClasses(view), SEX::FEMALE, true);
  EXPECT_LT(births, 100 / (all[0].e / YEAR) * 2);
  EXPECT_GT(births, 0);
}

TEST_F(HerdTest, SummarisesReproduction) {
  add("b1 2003-07-05", "9", SEX::FEMALE, "2");  // the twin of 5
  add("b1 2003", "10", SEX::FEMALE, "2");       // some time of that year
  Animals.populationPedigree();
  reproduction_settings settings;
  settings.litter_days = 5;
  const reproduction_summary summary = reproductionOf(Animals, view, {}, settings);
  EXPECT_EQ(summary.births.males, 1U);
  EXPECT_EQ(summary.births.females, 6U);
  EXPECT_EQ(summary.births.unknown, 1U);
  EXPECT_NEAR(summary.male_share, 1.0 / 7, 1e-12);
  EXPECT_EQ(summary.females.all.sample_size, 6U);
  EXPECT_EQ(summary.females.unknown_ages, 2U);      // 1 and 2
  EXPECT_EQ(summary.females.first.minimum, 366);    // 1 at the birth of 3
  EXPECT_EQ(summary.females.last.sample_size, 1U);  // 1; 2 is there
  EXPECT_EQ(summary.females.last.mean, 731);
  EXPECT_EQ(summary.litter_sizes, (std::map<std::size_t, std::size_t>{{1, 3}, {2, 1}}));
  EXPECT_EQ(summary.intervals.sample_size, 2U);  // 1: 365 days, 2: 365 days
  EXPECT_EQ(summary.intervals.mean, 365);
  EXPECT_EQ(summary.dams_unknown, 2U);
  EXPECT_EQ(summary.days_unknown, 1U);
  EXPECT_EQ(summary.months[0], 4U);  // 1, 2, 3, 6
  EXPECT_EQ(summary.months[6], 3U);
  EXPECT_EQ(summary.months_unknown, 1U);
  EXPECT_EQ(summary.females.adults, 1U);  // 2; 9 is too young
  EXPECT_EQ(summary.females.breeders, 1U);
  EXPECT_EQ(summary.females.lifetime.sample_size, 2U);  // 1 and 7
  EXPECT_EQ(summary.females.lifetime.mean, 1);
  EXPECT_EQ(summary.males.adults, 0U);
}

}  // namespace
}  // namespace spx
