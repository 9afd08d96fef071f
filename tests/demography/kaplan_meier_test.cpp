#include "spx/demography/kaplan_meier.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace spx {
namespace {

std::vector<observed_time> timesOf(std::initializer_list<int> weeks, std::uint32_t group = 0) {
  std::vector<observed_time> times;
  for (const int week : weeks) {
    times.push_back({0, std::abs(static_cast<double>(week)), week > 0, group});  // below 0: censored
  }
  return times;
}

// Weeks in remission of 42 children, 6-mercaptopurine and placebo (Freireich et al. 1963); the values are those that
// textbooks print for them.
const std::vector<observed_time> TREATED =
    timesOf({6, 6, 6, -6, 7, -9, 10, -10, -11, 13, 16, -17, -19, -20, 22, 23, -25, -32, -32, -34, -35});
const std::vector<observed_time> PLACEBO =
    timesOf({1, 1, 2, 2, 3, 4, 4, 5, 5, 8, 8, 8, 8, 11, 11, 12, 12, 15, 17, 22, 23}, 1);

TEST(KaplanMeier, GivesThePublishedCurve) {
  struct step {
    double time, at_risk, deaths, survival, std_error;
  };
  constexpr step STEPS[] = {{6, 21, 3, 0.8571, 0.0764},  {7, 17, 1, 0.8067, 0.0869},  {10, 15, 1, 0.7529, 0.0963},
                            {13, 12, 1, 0.6902, 0.1068}, {16, 11, 1, 0.6275, 0.1141}, {22, 7, 1, 0.5378, 0.1282},
                            {23, 6, 1, 0.4482, 0.1346}};
  const survival_curve curve = kaplanMeier(TREATED);
  std::vector<survival_step> deaths;
  for (const survival_step& one : curve.steps) {
    if (one.deaths > 0) deaths.push_back(one);
  }
  ASSERT_EQ(deaths.size(), std::size(STEPS));
  for (std::size_t at = 0; at < deaths.size(); ++at) {
    EXPECT_EQ(deaths[at].time, STEPS[at].time);
    EXPECT_EQ(deaths[at].at_risk, STEPS[at].at_risk);
    EXPECT_EQ(deaths[at].deaths, STEPS[at].deaths);
    EXPECT_NEAR(deaths[at].survival, STEPS[at].survival, 5e-5);
    EXPECT_NEAR(deaths[at].std_error, STEPS[at].std_error, 5e-5);
  }
  EXPECT_EQ(curve.median, 23);
  EXPECT_EQ(kaplanMeier(PLACEBO).median, 8);
  EXPECT_TRUE(std::isnan(kaplanMeier(PLACEBO).steps.back().lower));
}

TEST(KaplanMeier, ComparesGroupsAsPublished) {
  std::vector<observed_time> both = TREATED;
  both.insert(both.end(), PLACEBO.begin(), PLACEBO.end());
  const log_rank_result test = logRankTest(both, 2);
  EXPECT_EQ(test.groups[0].observed, 9);
  EXPECT_NEAR(test.groups[0].expected, 19.25, 0.005);
  EXPECT_NEAR(test.groups[1].expected, 10.75, 0.005);
  EXPECT_NEAR(test.chi_square, 16.79, 0.005);
  EXPECT_EQ(test.degrees, 1U);
  EXPECT_NEAR(test.p, 4.17e-5, 5e-8);
}

// Life lines; "x" dies, "o" is censored. At risk at t: entry < t <= exit.
//
//   age  0    1    2    3    4
//   a    ----------x
//   b    ---------------o
//   c         ----------x            enters at 1
//   d              ----------x       enters at 2: not at risk at 2
//   e    -----x
//   f                   ----------o
TEST(KaplanMeier, TakesLateEntries) {
  const std::vector<observed_time> lives = {{0, 2, true}, {0, 3, false}, {1, 3, true},
                                            {2, 4, true}, {0, 1, true},  {3, 5, false}};
  const survival_curve curve = kaplanMeier(lives);
  const double at_risk[] = {3, 3, 3, 2, 1};
  const double survival[] = {2.0 / 3, 4.0 / 9, 8.0 / 27, 4.0 / 27, 4.0 / 27};
  ASSERT_EQ(curve.steps.size(), 5U);
  for (std::size_t at = 0; at < 5; ++at) {
    EXPECT_EQ(curve.steps[at].at_risk, at_risk[at]);
    EXPECT_NEAR(curve.steps[at].survival, survival[at], 1e-15);
  }
  EXPECT_EQ(curve.median, 2);
  EXPECT_NEAR(curve.restricted_mean, 1 + 2.0 / 3 + 4.0 / 9 + 8.0 / 27 + 4.0 / 27, 1e-15);
  EXPECT_EQ(stepAt(curve, 0.5).survival, 1);
  EXPECT_NEAR(stepAt(curve, 2.5).survival, 4.0 / 9, 1e-15);
  EXPECT_NEAR(stepAt(curve, 5).survival, 4.0 / 27, 1e-15);
  EXPECT_TRUE(std::isnan(stepAt(curve, 5.5).survival)) << "nobody was watched so long";
  EXPECT_TRUE(std::isnan(stepAt(kaplanMeier({}), 1).survival));
}

TEST(KaplanMeier, EqualsTheEmpiricalCurveWithoutCensoring) {
  std::mt19937 random(3);
  std::vector<observed_time> lives;
  for (int animal = 0; animal < 500; ++animal) lives.push_back({0, 1.0 + random() / 1e6, true});
  const survival_curve curve = kaplanMeier(lives);
  ASSERT_EQ(curve.steps.size(), 500U);
  double mean = 0;
  for (std::size_t at = 0; at < 500; ++at) {
    const double share = static_cast<double>(499 - at) / 500;
    EXPECT_NEAR(curve.steps[at].survival, share, 1e-12);
    if (at < 499) {
      EXPECT_NEAR(curve.steps[at].std_error, std::sqrt(share * (1 - share) / 500), 1e-12);
    }
    mean += curve.steps[at].time / 500;
  }
  EXPECT_NEAR(curve.restricted_mean, mean, 1e-9);
  EXPECT_NEAR(curve.median, (curve.steps[249].time + curve.steps[250].time) / 2, 1e-12);
}

TEST(KaplanMeier, SurvivesOddInput) {
  EXPECT_TRUE(kaplanMeier({}).steps.empty());
  EXPECT_TRUE(std::isnan(kaplanMeier({}).median));
  const std::vector<observed_time> never{{3, 3, true}, {4, 2, true}};
  EXPECT_TRUE(kaplanMeier(never).steps.empty());
  EXPECT_TRUE(std::isnan(logRankTest(never, 1).p));
  const std::vector<observed_time> alone{{0, 1, true, 0}, {2, 3, true, 1}};  // never at risk together
  EXPECT_EQ(logRankTest(alone, 2).degrees, 0U);
}

TEST(Statistics, AgreeWithTables) {
  EXPECT_NEAR(chiSquareTail(3.841, 1), 0.05, 5e-5);
  EXPECT_NEAR(chiSquareTail(18.307, 10), 0.05, 5e-6);
  EXPECT_NEAR(chiSquareTail(2, 2), std::exp(-1.0), 1e-14);
  EXPECT_EQ(chiSquareTail(0, 3), 1);
  const auto share = wilsonInterval(0, 20);  // Newcombe 1998
  EXPECT_EQ(share.lower, 0);
  EXPECT_NEAR(share.upper, 0.1611, 5e-5);
  EXPECT_NEAR(wilsonInterval(15, 148).lower, 0.0624, 5e-5);
  EXPECT_NEAR(wilsonInterval(15, 148).upper, 0.1605, 5e-5);
  EXPECT_EQ(describe({4, 1, 3, 2}).median, 2.5);
  EXPECT_TRUE(std::isnan(describe({}).mean));
}

}  // namespace
}  // namespace spx
