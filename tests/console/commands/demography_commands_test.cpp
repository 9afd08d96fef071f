#include <sstream>

#include <gtest/gtest.h>

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

/// Six animals of two zoos: 1 and 2 are caught, 3 to 5 born to them, 6 of unknown age.
///
///         2000     2001     2002     2003     2004
///   1 m     w1=======================================
///   2 f     w1=================a2====================
///   3 f              b1=====================x
///   4 m                      b1x
///   5 ?                               b2=============
///   6 f                               i2=====o
class DemographyTest : public ConsoleTest {
 protected:
  DemographyTest() {
    table("animals.csv",
          "id,sire,dam,sex,birth_date,birth_location,death_date,origin\n"
          "1,WILD,WILD,m,1998,Wild,,wild-born\n"
          "2,WILD,WILD,f,1997-05-01,Wild,,wild-born\n"
          "3,1,2,f,2001-05-01,Zoo A,2003-08-01,captive-born\n"
          "4,1,2,m,2001-12-01,Zoo A,2001-12-01,captive-born\n"
          "5,1,2,,2003-02-01,Zoo B,,captive-born\n"
          "6,UNK,UNK,f,,Elsewhere,,unknown\n");
    table("events.csv",
          "id,date,event,location\n"
          "1,2000-05-01,from wild,Zoo A\n"
          "2,2000-05-01,from wild,Zoo A\n"
          "2,2002-06-01,arrival,Zoo B\n"
          "6,2003-02-01,population in,Zoo B\n"
          "6,2003-10-01,population out,Elsewhere\n");
    table("locations.csv", "level,id,name\nplace,1,Wild\nplace,2,Zoo A\nplace,3,Zoo B\nplace,4,Elsewhere\n");
  }

  /// The standard output of a command, which must succeed.
  std::string shown(const std::string& words) {
    std::vector<std::string> all = {"--studbook", home};
    std::istringstream text(words);
    for (std::string word; text >> word;) all.push_back(word == "A" ? "Zoo A" : word);
    EXPECT_EQ(run(all), 0) << takeErrors();
    errors = takeErrors();
    return takeOutput();
  }

  std::string errors;
};

TEST_F(DemographyTest, CensusBalancesInAZoo) {
  EXPECT_EQ(shown("census --location A --until 2004-01-01 --format csv"),
            "date,males,females,unknown,total,births,deaths,entries,departures,losses\n"
            "2000-01-01,0,0,0,0,0,0,0,0,0\n"
            "2001-01-01,1,1,0,2,0,0,2,0,0\n"
            "2002-01-01,1,2,0,3,2,1,0,0,0\n"
            "2003-01-01,1,1,0,2,0,0,0,1,0\n"
            "2004-01-01,1,0,0,1,0,1,0,0,0\n");
  EXPECT_NE(errors.find("4 of 6 animals counted; left out: 2 never in the chosen locations."), std::string::npos);
  // A period that begins with animals present has no changes in its first row.
  EXPECT_NE(shown("census --from 2003 --until 2004-01-01 --format csv").find("2003-01-01,1,2,0,3,,,,,\n"),
            std::string::npos);
}

TEST_F(DemographyTest, PyramidIsDrawn) {
  const std::string text = shown("age-pyramid --on 2003-06-01 --handle-unknown ignore");
  EXPECT_NE(text.find("Age unknown: 0 male, 1 female, 0 of unknown sex."), std::string::npos) << text;
  EXPECT_NE(text.find("5 animals present on 2003-06-01."), std::string::npos) << text;
  EXPECT_NE(text.find("    0       6  #        1        0\n"), std::string::npos) << text;
  EXPECT_EQ(shown("age-pyramid --on 2003-06-01 --class-width 4y --format csv"),
            "age,males,females,unknown\n0,0.5,1.5,0\n4,1,1,0\n,0,1,0\n");
}

TEST_F(DemographyTest, SurvivalNamesItsColumns) {
  const std::string until = " --unit days --until 2004-01-01 --origin captive-born --format csv";
  EXPECT_EQ(shown("survival --columns group,time,at_risk,deaths,censored,lower" + until + " --where time>300"),
            "group,time,at_risk,deaths,censored,lower\n"
            "all,334,2,0,1,0.05407342678651668\n"
            "all,822,1,1,0,\n");
  EXPECT_EQ(shown("survival" + until).substr(0, 67),
            "group,time,at_risk,deaths,censored,survival,std_error,lower,upper\na");
  EXPECT_EQ(shown("survival --by sex --summary --until 2004-01-01 --format csv").substr(0, 60),
            "group,watched,deaths,expected,median,median_lower,median_upp");
  EXPECT_NE(errors.find("5 of 6 animals counted; left out: 1 age unknown."), std::string::npos) << errors;
  EXPECT_EQ(run({"--studbook", home, "survival", "--by", "location", "--level", "zoo"}), 2);
}

TEST_F(DemographyTest, LifeTableAndGrowthAgree) {
  const std::string table = shown("life-table --until 2004-01-01 --format csv --columns sex,age,at_risk,deaths,births");
  EXPECT_NE(table.find("female,4,1,0,1\n"), std::string::npos) << table;
  const std::string growth = shown("growth --until 2004-01-01 --format json --runs 10");
  for (const char* name : {"\"r0\":", "\"generation_time\":", "\"r\":", "\"lambda\":", "\"lambda_census\":"}) {
    EXPECT_NE(growth.find(name), std::string::npos) << growth;
  }
  EXPECT_EQ(shown("growth --until 2004-01-01 --format json --runs 10"), growth);
  EXPECT_EQ(run({"--studbook", home, "projection", "--sex", "male"}), 2);
  takeErrors();
  // In a view of males, growth is that of the males.
  const std::string males = shown("growth --until 2004-01-01 --sex male --format json --runs 0");
  EXPECT_NE(males.find("\"line\":\"male\""), std::string::npos) << males;
  const std::string page = shown("demography --until 2004-01-01 --sex male");
  EXPECT_NE(page.find("lambda by life table, males"), std::string::npos) << page;
  EXPECT_EQ(page.find("adult females"), std::string::npos) << page;
}

TEST_F(DemographyTest, ThePageEndsWithTheStudbook) {
  const std::string page = shown("demography");
  EXPECT_NE(page.find("all animals, until 2003-10-01"), std::string::npos) << page;
  EXPECT_NE(shown("demography --format csv").find("\nPopulation,animals,3,,\n"), std::string::npos);
  EXPECT_NE(shown("reproduction").find("3 births: 1 male, 1 female, 1 of unknown sex."), std::string::npos);
}

}  // namespace
}  // namespace spx::console
