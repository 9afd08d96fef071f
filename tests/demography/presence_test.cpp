#include "spx/demography/presence.h"

#include <gtest/gtest.h>

#include "tests/demography/life_lines.h"

namespace spx {
namespace {

struct life_case {
  const char* why;
  const char* line;
  const char* stays;  ///< or the reason why there are none
};

// Letters as in lifeOf.
constexpr life_case LIVES[] = {
    {"an animal that is still there", "b1 2000-05-01", "born1 2000-05-01 there"},
    {"a transfer is one stay after the other", "b1 2000-05-01 a2 2003-02-01 d2 2010-01-01",
     "born1 2000-05-01 moved 2003-02-01, arrived2 2003-02-01 died 2010-01-01"},
    {"caught in the wild: not there before", "B9 1998 w1 2000-05-01 d1 2001-01-01",
     "entered1 2000-05-01 died 2001-01-01"},
    {"the first arrival of a wild animal is its entry", "B9 1998 a1 2000-05-01", "entered1 2000-05-01 there"},
    {"a wild animal without an entry", "B1 1998-01-01 d1 1999-01-01", "born1 1998-01-01 died 1999-01-01"},
    {"a wild animal that is first heard of when released", "B1 1998-01-01 r9 1999-01-01",
     "born1 1998-01-01 departed 1999-01-01"},
    {"born outside the population", "b5 1998-01-01 i1 2000-01-01", "entered1 2000-01-01 there"},
    {"birth unknown: from its first event", "a2 2000-01-01 l2 2001-01-01", "entered2 2000-01-01 lost 2001-01-01"},
    {"released and caught again", "b1 2000-01-01 r9 2001-01-01 w2 2003-01-01",
     "born1 2000-01-01 departed 2001-01-01, entered2 2003-01-01 there"},
    {"surplus", "b1 2000-01-01 u1 2001-01-01", "born1 2000-01-01 departed 2001-01-01"},
    {"lost, and found again", "b1 2000-01-01 l1 2001-01-01 a1 2002-01-01",
     "born1 2000-01-01 lost 2001-01-01, entered1 2002-01-01 there"},
    {"a death after the release is not the population's", "b1 2000-01-01 r9 2001-01-01 d9 2001-06-01",
     "born1 2000-01-01 departed 2001-01-01"},
    {"social and management events move, and end nothing", "b1 2000-01-01 s2 2001-01-01 m1 2002-01-01",
     "born1 2000-01-01 moved 2001-01-01, arrived2 2001-01-01 moved 2002-01-01, "
     "arrived1 2002-01-01 there"},
    {"two arrivals without a departure", "b1 2000-01-01 i2 2001-01-01 w2 2002-01-01 i2 2003-01-01",
     "entered2 2001-01-01 there"},
    {"two departures", "b1 2000-01-01 o9 2001-01-01 o9 2002-01-01 s1 2002-06-01",
     "born1 2000-01-01 departed 2001-01-01"},
    {"stillborn: a stay of no length", "b1 2000-01-01 d1 2000-01-01", "born1 2000-01-01 died 2000-01-01"},
    {"in and out on one day", "b1 2000-01-01 a2 2001-01-01 a1 2001-01-01",
     "born1 2000-01-01 moved 2001-01-01, arrived2 2001-01-01 moved 2001-01-01, "
     "arrived1 2001-01-01 there"},
    {"recorded out of order", "b1 2000-01-01 a3 2003-01-01 a2 2002-01-01",
     "born1 2000-01-01 moved 2002-01-01, arrived2 2002-01-01 moved 2003-01-01, "
     "arrived3 2003-01-01 there"},
    {"an event before the birth", "b1 2000-01-01 a2 1999-12-31", "born1 2000-01-01 there"},
    {"an event after the death", "b1 2000-01-01 a2 2002-01-01 d1 2001-01-01", "born1 2000-01-01 died 2001-01-01"},
    {"years: the middle of each", "b1 2000 a2 2003 d2 2010",
     "born1 2000-07-01 moved 2003-07-02, arrived2 2003-07-02 died 2010-07-02"},
    {"months", "b1 2000-04 d1 2000-06", "born1 2000-04-15 died 2000-06-15"},
    {"a birth in the year of an exact death lies before it", "b1 2000 d1 2000-03-11",
     "born1 2000-02-05 died 2000-03-11"},
    {"birth and death of one year share it", "b1 2001 d1 2001", "born1 2001-07-02 died 2001-10-01"},
    {"the recorded order is kept within a year", "b1 2000-01-01 a2 2001-09-01 a3 2001",
     "born1 2000-01-01 moved 2001-09-01, arrived2 2001-09-01 moved 2001-10-31, "
     "arrived3 2001-10-31 there"},
    {"an event that says nothing", "B1 1998-01-01 n1 1999-01-01 w2 2000-01-01", "entered2 2000-01-01 there"},
    {"no date at all", "", "neither birth nor entry is dated"},
    {"only an end", "d1 2000-01-01", "neither birth nor entry is dated"},
    {"died before its birth", "b1 2000-01-01 d1 1999-01-01", "died or lost before birth"},
};

TEST(Presence, FollowsLives) {
  for (const auto& [why, line, expected] : LIVES) {
    SCOPED_TRACE(why);
    life_course course;
    life_findings findings;
    const LEFT_OUT reason = followLife(lifeOf(line), {}, course, findings);
    EXPECT_EQ(reason == LEFT_OUT::COUNT ? textOf(course.stays) : getText(reason), expected);
  }
}

TEST(Presence, CountsContradictions) {
  const auto found = [](const char* line) {
    life_course course;
    life_findings findings;
    followLife(lifeOf(line), {}, course, findings);
    return findings;
  };
  EXPECT_EQ(found("b1 2000-01-01 i2 2001-01-01 w2 2002-01-01 i2 2003-01-01").entries_while_present, 2U);
  EXPECT_EQ(found("b1 2000-01-01 o9 2001-01-01 o9 2002-01-01").departures_while_away, 1U);
  EXPECT_EQ(found("b1 2000-01-01 o9 2001-01-01 s1 2002-01-01").events_while_away, 1U);
  EXPECT_EQ(found("b1 2000-01-01 o9 2001-01-01 d9 2002-01-01").ends_while_away, 1U);
  EXPECT_EQ(found("b1 2000-01-01 a2 1999-12-31 d1 2001-01-01").events_before_birth, 1U);
  EXPECT_EQ(found("b1 2000-01-01 a2 2001-01-02 d1 2001-01-01").events_after_end, 1U);
  EXPECT_EQ(found("b1 2000-01-01 a3 2003-01-01 a2 2002-01-01").events_out_of_order, 1U);
  EXPECT_EQ(found("b1 2000-01-01 a3 x").undated_events, 1U);
  EXPECT_EQ(found("B1 2000-01-01").assumed_entries, 1U);
}

TEST(Presence, SettingsLeaveAnimalsOut) {
  const auto outcome = [](const char* line, const presence_settings& settings) {
    life_course course;
    life_findings findings;
    const LEFT_OUT reason = followLife(lifeOf(line), settings, course, findings);
    return reason == LEFT_OUT::COUNT ? textOf(course.stays) : getText(reason);
  };
  presence_settings none_young;
  none_young.use_neonate = none_young.use_stillbirth = false;
  EXPECT_EQ(outcome("b1 2000-01-01 d1 2000-01-01", none_young), "stillborn");
  EXPECT_EQ(outcome("b1 2000-01-01 d1 2000-01-31", none_young), "died as neonates");
  EXPECT_NE(outcome("b1 2000-01-01 d1 2000-02-01", none_young), "died as neonates");
  EXPECT_NE(outcome("b1 2000-01-01 l1 2000-01-02", none_young), "died as neonates");

  presence_settings den;
  den.emerge_days = 31;
  EXPECT_EQ(outcome("b1 2000-01-01 d1 2000-01-31", den), "gone before emerging from the den");
  EXPECT_EQ(outcome("b1 2000-01-01 a2 2000-01-03", den), "born2 2000-02-01 there");

  presence_settings mortal;
  mortal.longest_male_life = mortal.longest_female_life = 365.25 * 20;
  mortal.until = qs_lib::msToDay(qs_lib::dateToJulian(std::string("2020-01-02")));
  EXPECT_EQ(outcome("b1 1999-12-31 a1 2003-01-01", mortal), "born1 1999-12-31 lost 2003-01-01");
  EXPECT_EQ(outcome("b1 2000-01-03 a1 2003-01-01", mortal), "born1 2000-01-03 there");
  mortal.longest_female_life = 0;
  for (const auto& [sex, end] :
       {std::pair{SEX::MALE, STAY_END::LOST}, {SEX::FEMALE, STAY_END::PRESENT}, {SEX::UNKNOWN, STAY_END::PRESENT}}) {
    master_data animal = lifeOf("b1 1999-12-31");
    animal.sex = sex;
    life_course course;
    life_findings findings;
    followLife(animal, mortal, course, findings);
    EXPECT_EQ(course.stays.back().end, end) << "the limit is that of males: " << getEnumName(sex);
  }
}

TEST(Presence, AnUncertainBirthIsNoAge) {
  const auto errorOf = [](const char* line) {
    life_course course;
    life_findings findings;
    followLife(lifeOf(line), {}, course, findings);
    return course.birth == 0 ? -1 : static_cast<int>(course.birth_error);
  };
  EXPECT_EQ(errorOf("b1 2000-01-01"), 0);
  EXPECT_EQ(errorOf("b1 2001"), 182);
  EXPECT_EQ(errorOf("b1 2001 d1 2001-01-11"), 5);
  EXPECT_EQ(errorOf("b1 1990-01-01?"), -1);
  EXPECT_EQ(errorOf("a1 1990-01-01"), -1);
}

TEST(LocationSet, HoldsWhatLiesWithin) {
  const auto id = [](const char* text) {
    DemeID deme;
    deme.set(std::string(text));
    return deme.binary();
  };
  const LocationSet chosen({id("3.1"), id("200")});
  for (const char* inside : {"3.1", "3.1.12", "200.0.7"}) {
    EXPECT_TRUE(chosen.contains(id(inside))) << inside;
  }
  EXPECT_FALSE(chosen.contains(id("3")) || chosen.contains(id("3.11")) || chosen.contains(id("20")) ||
               chosen.contains(0));
  EXPECT_TRUE(LocationSet({}).contains(0));
  EXPECT_TRUE(LocationSet({}).contains(id("9")));
}

TEST(Presence, PlacesAddUpToThePopulation) {
  const std::vector<master_data> records = randomLives(7, 3000);
  DataFilter everywhere;
  everywhere.origin = BIRTH_TYPE::ALL;
  const Presence population(records, everywhere, {});
  EXPECT_EQ(population.in_view, records.size());
  EXPECT_EQ(population.in_view, population.lives().size() + population.left_out.total());
  std::vector<Presence> places;
  for (int number = 1; number <= 3; ++number) {
    DataFilter there = everywhere;
    there.demes = {place(number)};
    places.emplace_back(records, there, presence_settings{});
    EXPECT_EQ(places.back().lives().size() + places.back().left_out.total(), records.size());
  }
  for (qs_lib::day_number day = 2451545; day < 2451545 + 9500; day += 97) {
    std::size_t sum = 0;
    for (const Presence& one : places) sum += one.presentOn(day).size();
    EXPECT_EQ(sum, population.presentOn(day).size()) << day;
  }
  for (const Presence::life& life : population.lives()) {
    qs_lib::day_number reached = 0;
    for (const stay& time : population.stays(life)) {
      EXPECT_LE(reached, time.from);
      EXPECT_LE(time.from, time.to);
      reached = time.to;
    }
  }
}

}  // namespace
}  // namespace spx
