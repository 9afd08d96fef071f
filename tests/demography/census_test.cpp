#include "spx/demography/census.h"

#include <gtest/gtest.h>

#include "spx/demography/age_structure.h"

#include "tests/demography/life_lines.h"

namespace spx {
namespace {

DataFilter viewOf(const char* from, const char* until) {
  DataFilter view;
  view.origin = BIRTH_TYPE::ALL;
  view.start_date = dayOf(from);
  view.end_date = view.monitor_date = dayOf(until);
  return view;
}

std::string textOf(const std::vector<census_row>& rows) {
  std::string text;
  for (const census_row& row : rows) {
    text += qs_lib::julianToISO(qs_lib::dayToMs(row.date)) + " " + std::to_string(row.present.males) + "." +
            std::to_string(row.present.females) + "." + std::to_string(row.present.unknown) + " b" +
            std::to_string(row.births) + " d" + std::to_string(row.deaths) + " e" + std::to_string(row.entries) + " o" +
            std::to_string(row.departures) + " l" + std::to_string(row.losses) + "\n";
  }
  return text;
}

// Zoo 1 and zoo 2; a capital stands for the day of a census, 1 January:
//
//            2000      2001      2002      2003      2004
//   1 male            b1.........1....a2..2.........2       goes from 1 to 2
//   2 fem.  w1........1.........1....x1                     caught, dies
//   3 ?                b1x                                  stillborn
//   4 male            b1........l                          lost on the census day
//   5 fem.                                a1..o             comes (birth unknown), leaves
std::vector<master_data> zoo() {
  return {lifeOf("b1 2000-06-01 a2 2002-06-01", "1", SEX::MALE),
          lifeOf("B9 1998 w1 1999-05-01 d1 2002-06-01", "2", SEX::FEMALE),
          lifeOf("b1 2000-08-01 d1 2000-08-01", "3", SEX::UNKNOWN),
          lifeOf("b1 2000-06-01 l1 2002-01-01", "4", SEX::MALE),
          lifeOf("a1 2002-07-01 o9 2003-03-01", "5", SEX::FEMALE)};
}

TEST(Census, CountsAndBalances) {
  DataFilter view = viewOf("1990-01-01", "2004-01-01");
  const auto rowsOf = [&view] {
    const Presence presence(zoo(), view, {});
    return textOf(census(presence, censusDays(view, firstDay(presence))));
  };
  EXPECT_EQ(rowsOf(),
            "1999-01-01 0.0.0 b0 d0 e0 o0 l0\n"
            "2000-01-01 0.1.0 b0 d0 e1 o0 l0\n"
            "2001-01-01 2.1.0 b3 d1 e0 o0 l0\n"
            "2002-01-01 1.1.0 b0 d0 e0 o0 l1\n"
            "2003-01-01 1.1.0 b0 d1 e1 o0 l0\n"
            "2004-01-01 1.0.0 b0 d0 e0 o1 l0\n");
  view.demes = {place(1)};
  EXPECT_EQ(rowsOf(),
            "1999-01-01 0.0.0 b0 d0 e0 o0 l0\n"
            "2000-01-01 0.1.0 b0 d0 e1 o0 l0\n"
            "2001-01-01 2.1.0 b3 d1 e0 o0 l0\n"
            "2002-01-01 1.1.0 b0 d0 e0 o0 l1\n"
            "2003-01-01 0.1.0 b0 d1 e1 o1 l0\n"
            "2004-01-01 0.0.0 b0 d0 e0 o1 l0\n");
  view.demes = {place(2)};
  EXPECT_EQ(rowsOf(),
            "2002-01-01 0.0.0 b0 d0 e0 o0 l0\n2003-01-01 1.0.0 b0 d0 e1 o0 l0\n"
            "2004-01-01 1.0.0 b0 d0 e0 o0 l0\n");
}

TEST(Census, DaysFollowTheView) {
  struct row {
    qs_lib::TIME_INTERVAL interval;
    int month, day;
    const char* from;
    const char* until;
    const char* days;
  };
  const row ROWS[] = {
      {qs_lib::TIME_INTERVAL::ANNUAL, 2, 31, "1999-03-01", "2001-02-28", "2000-02-29 2001-02-28 "},
      {qs_lib::TIME_INTERVAL::BIANNUAL, 10, 1, "2000-01-01", "2001-03-31", "2000-04-01 2000-10-01 "},
      {qs_lib::TIME_INTERVAL::QUARTER, 1, 31, "2000-01-31", "2000-08-01", "2000-01-31 2000-04-30 2000-07-31 "},
      {qs_lib::TIME_INTERVAL::MONTH, 5, 31, "2000-01-30", "2000-03-31", "2000-01-31 2000-02-29 2000-03-31 "},
      {qs_lib::TIME_INTERVAL::WEEK, 1, 1, "2000-01-03", "2000-01-20", "2000-01-03 2000-01-10 2000-01-17 "},
      {qs_lib::TIME_INTERVAL::DAY, 1, 1, "2000-02-28", "2000-03-01", "2000-02-28 2000-02-29 2000-03-01 "},
      {qs_lib::TIME_INTERVAL::BIENNIAL, 1, 1, "1999-01-01", "2003-01-01", "2000-01-01 2002-01-01 "},
      {qs_lib::TIME_INTERVAL::FIVE_YEAR, 7, 1, "1999-01-01", "2010-12-31", "2000-07-01 2005-07-01 2010-07-01 "},
      {qs_lib::TIME_INTERVAL::ANNUAL, 1, 1, "2000-01-02", "2000-12-31", ""},
      {qs_lib::TIME_INTERVAL::ANNUAL, 1, 1, "2001-01-01", "2000-01-01", ""},
  };
  for (const row& one : ROWS) {
    DataFilter view = viewOf(one.from, one.until);
    view.census_interval = one.interval;
    view.census_month = one.month;
    view.census_day = one.day;
    std::string text;
    for (const qs_lib::day_number day : censusDays(view, 0)) text += qs_lib::julianToISO(qs_lib::dayToMs(day)) + " ";
    EXPECT_EQ(text, one.days);
  }
}

TEST(Census, BalancesForRandomStudbooks) {
  for (const unsigned seed : {1U, 2U, 3U}) {
    const std::vector<master_data> records = randomLives(seed, 2000);
    DataFilter view = viewOf("1999-01-01", "2026-01-01");
    view.census_interval = qs_lib::TIME_INTERVAL::QUARTER;
    const std::vector<qs_lib::day_number> days = censusDays(view, 0);
    const std::vector<census_row> population = census(Presence(records, view, {}), days);
    std::vector<std::size_t> over_places(days.size());
    for (int number = 0; number <= 3; ++number) {
      if (number > 0) view.demes = {place(number)};
      const auto rows = number == 0 ? population : census(Presence(records, view, {}), days);
      for (std::size_t at = 0; at < rows.size(); ++at) {
        const std::size_t before = at == 0 ? 0 : rows[at - 1].present.total();
        EXPECT_EQ(rows[at].present.total() + rows[at].deaths + rows[at].departures + rows[at].losses,
                  before + rows[at].births + rows[at].entries);
        if (number > 0) over_places[at] += rows[at].present.total();
      }
    }
    for (std::size_t at = 0; at < days.size(); ++at) EXPECT_EQ(over_places[at], population[at].present.total());
  }
}

TEST(Census, GrowthIsTheSlope) {
  std::vector<census_row> rows(4);
  const qs_lib::day_number days[] = {2451545, 2451545 + 1461, 2451545 + 2 * 1461, 2451545 + 3 * 1461};
  for (std::size_t at = 0; at < 4; ++at) {
    rows[at].date = days[at];
    rows[at].present.females = std::size_t{16} << at;  // doubles in 4 years
  }
  EXPECT_NEAR(censusLambda(rows), std::pow(2.0, 0.25), 1e-12);
  EXPECT_TRUE(std::isnan(censusLambda({rows[0]})));
}

// Ages on 2004-01-01; classes of a year, the last one open from 2 years.
TEST(AgeStructure, CountsEverybodyOnce) {
  DataFilter view = viewOf("1990-01-01", "2004-01-01");
  view.number_of_classes = 3;
  const std::vector<master_data> records = {
      lifeOf("b1 2003-06-01", "1", SEX::MALE),   lifeOf("b1 2003-06-01", "2", SEX::UNKNOWN),
      lifeOf("b1 2002-06-01", "3", SEX::FEMALE), lifeOf("b1 1990-06-01", "4", SEX::FEMALE),
      lifeOf("a1 1995-06-01", "5", SEX::FEMALE), lifeOf("b1 2003-06-01 d1 2004-01-01", "6", SEX::MALE)};
  const Presence presence(records, view, {});
  const auto textOf = [&](HANDLE_UNKNOWN handle) {
    view.handle_unknown = handle;
    const age_structure structure = ageStructure(presence, view, view.end_date);
    std::string text;
    for (const age_row& row : structure.rows) {
      text += qs_lib::defaultReal(row.males) + "." + qs_lib::defaultReal(row.females) + "." +
              qs_lib::defaultReal(row.unknown) + " ";
    }
    return text + "? " + qs_lib::defaultReal(structure.unknown_age.total());
  };
  EXPECT_EQ(textOf(HANDLE_UNKNOWN::IGNORE), "1.0.1 0.1.0 0.1.0 ? 1");
  EXPECT_EQ(textOf(HANDLE_UNKNOWN::EQUAL), "1.5.0.5.0 0.1.0 0.1.0 ? 1");
  EXPECT_EQ(textOf(HANDLE_UNKNOWN::OBSERVED_RATIO), "1.25.0.75.0 0.1.0 0.1.0 ? 1");
}

}  // namespace
}  // namespace spx
