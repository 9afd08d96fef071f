#include "console/project/life_on_day.h"

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

qs_lib::day_number dayOf(const char* date) {
  return qs_lib::msToDay(qs_lib::dateToJulian(std::string(date)));
}

class LifeOnDayTest : public ConsoleTest {
 protected:
  LifeOnDayTest() {
    studbook_files files;
    files.animals = table("animals.csv",
                          "id,sire,sex,birth_date,birth_location,death_date,death_event,origin\n"
                          "1,gone,m,1990-01-01,1,2000-01-01,death,captive-born\n"
                          "2,1,f,1995-01-01,1,2005-01-01,lost-to-follow-up,captive-born\n"
                          "3,1,f,1995-01-01,1,,,captive-born\n"
                          "4,,f,,,,,captive-born\n"
                          "5,,m,1992-01-01,1,,,wild-born\n"
                          "6,,m,,,1999-01-01,death,captive-born\n"
                          "7,UNK,m,1996-01-01,1,2007-01-01,death,captive-born\n");
    files.events = table("events.csv",
                         "id,date,event,location\n"
                         "2,1998-01-01,arrival,2\n"
                         "3,1999-01-01,surplus,1\n"
                         "7,2002-01-01,released,1\n"
                         "5,1996-01-01,from wild,2\n");
    files.locations = table("locations.csv", "level,id,name\nzoo,1,North\nzoo,2,South\n");
    loadStudbook(files);
    takeErrors();
  }
};

TEST_F(LifeOnDayTest, TheDayDecidesStatusAgeAndPlace) {
  const struct {
    const char* id;
    const char* day;
    const char* status;
    double years;  ///< below 0: not known
    const char* place;
  } cases[] = {
      {"1", "1989-12-31", "not there yet", -1, ""}, {"1", "1990-01-01", "living", 0, "North"},
      {"1", "1995-01-01", "living", 5, "North"},    {"1", "2001-01-01", "dead", 10, ""},
      {"2", "1997-01-01", "living", 2, "North"},    {"2", "2000-01-01", "living", 5, "South"},
      {"2", "2020-01-01", "lost", 10, ""},          {"3", "2020-01-01", "left", 4, ""},
      {"7", "2003-01-01", "left", 6, ""},           {"7", "2008-01-01", "dead", 11, ""},
      {"4", "2020-01-01", "undated", -1, ""},       {"5", "1994-01-01", "not there yet", 2, ""},
      {"5", "2002-01-01", "living", 10, "South"},   {"6", "1998-01-01", "undated", -1, ""},
      {"6", "2002-01-01", "dead", -1, ""},          {"Pgone", "2002-01-01", "no record", -1, ""},
  };
  for (const auto& [id, day, status, years, place] : cases) {
    SCOPED_TRACE(std::string(id) + " on " + day);
    const position record = Animals.findMaster(id);
    ASSERT_LT(record, Animals.records.size());
    const LifeOnDay life(Animals.records[record], dayOf(day));
    EXPECT_STREQ(getText(life.status()), status);
    EXPECT_NEAR(life.ageYears().value_or(-1), years, 0.01);
    EXPECT_EQ(life.location() == 0 ? "" : MetaPop.getMemberName(life.location()), place);
  }
}

TEST_F(LifeOnDayTest, AParentWithoutARecordHasNoDates) {
  const std::string animals = at("animals.csv");
  EXPECT_EQ(run({"--studbook", animals, "pedigree", "2", "--format", "csv", "--columns",
                 "id,birth_date,age_years,status", "--where", "id=Pgone"}),
            0);
  EXPECT_EQ(takeOutput(), "id,birth_date,age_years,status\nPgone,,,no record\n");
  for (const char* name : {"Pgone", "gone"}) {
    EXPECT_EQ(run({"--studbook", animals, "show", name}), 0);
    const std::string card = takeOutput();
    EXPECT_NE(card.find("no record"), std::string::npos);
    EXPECT_NE(card.find("Offspring              1\n"), std::string::npos) << card;
    EXPECT_EQ(card.find("1802"), std::string::npos) << card;
    EXPECT_EQ(run({"--studbook", animals, "offspring", name, "--columns", "id", "--format", "csv"}), 0);
    EXPECT_EQ(takeOutput(), "id\n1\n");
  }
}

TEST_F(LifeOnDayTest, ListingsSayWhatTheyLeaveOut) {
  const struct {
    std::vector<std::string> words;
    int code;
    const char* says;
  } cases[] = {
      {{"list", "--where", "sex=blue"}, 0, "\n0 of 7 animals\n"},
      {{"list", "--where", "Sire=unknown", "--format", "csv", "--columns", "ID"}, 0, "id\n4\n5\n6\n7\n"},
      {{"list", "--where", "sire=", "--limit", "1"}, 0, "first 1 of 4 animals that match; 7 in all"},
      {{"list", "--alive-on", "1700-01-01"}, 0, "no animals match --alive-on 1700-01-01"},
      {{"list", "--from", "2000", "--until", "1999"}, 2, "the period ends before it begins: from 2000-01-01 until"},
      {{"list", "--from", "1992", "--until", "1992", "--columns", "id", "--format", "csv"}, 0, "id\n1\n"},
      {{"list", "--alive-on", "1992"}, 2, "on: \"1992\" is not one day (YYYY-MM-DD or today)"},
      {{"list", "--low-generation", "3", "--high-generation", "2"}, 2, "low-generation is above high-generation"},
      {{"living", "--on", "1997-01-01", "--where", "status=dead"}, 0, "0 of "},
  };
  for (auto [words, code, says] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    words.insert(words.begin(),
                 {"--studbook", at("animals.csv"), "--events", at("events.csv"), "--locations", at("locations.csv")});
    takeErrors();
    EXPECT_EQ(run(words), code);
    const std::string answer = takeOutput() + takeErrors();
    EXPECT_NE(answer.find(says), std::string::npos) << answer;
  }
}

}  // namespace
}  // namespace spx::console
