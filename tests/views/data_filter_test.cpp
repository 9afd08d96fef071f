#include "spx/views/data_filter.h"

#include <stdexcept>
#include <tuple>

#include <gtest/gtest.h>

#include "spx/core/meta_population.h"

#include "tests/core/family.h"

namespace spx {
namespace {

using qs_lib::day_number;

class Editing : public TemporaryHome {
 protected:
  // Eight levels, since only demes of the last level have small packed identifiers.
  Editing() {
    MetaPop = MetaPopulation();
    for (int level = 1; level <= 8; ++level) {
      MetaPop.addLevel("level " + std::to_string(level));
    }
    MetaPop.addMember("3", "Europe");
    MetaPop.addMember("5", "Asia");
    MetaPop.addMember("3.1", "Berlin");
    MetaPop.addMember("0.0.0.0.0.0.0.7", "seven");
    MetaPop.addMember("0.0.0.0.0.0.0.9", "nine");
    Subspecies.add("A");
    Subspecies.add("B");
    View.clearView();
  }

  std::string selected() const {
    std::string names;
    for (const deme_level& level : MetaPop.levels()) {
      for (const deme_member& member : level.members) {
        names += member.selected ? member.name + " " : "";
      }
    }
    return names;
  }
};

TEST_F(Editing, TheFirstDemeDeselectsAllOthers) {
  EXPECT_FALSE(View.addDeme("4"));
  EXPECT_FALSE(View.addDeme("level 2", "Europe")) << "a deme of level 1";
  EXPECT_FALSE(View.addDeme("no level", "Europe"));
  EXPECT_EQ(selected(), "Europe Asia Berlin seven nine ");
  EXPECT_TRUE(View.addDeme("3"));
  EXPECT_EQ(selected(), "Europe Berlin ");
  EXPECT_TRUE(View.addDeme("level 1", "Asia"));
  EXPECT_TRUE(View.addDeme(7));
  EXPECT_FALSE(View.addDeme("4"));
  EXPECT_EQ(selected(), "Europe Asia Berlin seven ");
  EXPECT_EQ(View.createDemeString(false, ';'), "seven;Europe;Asia;");
  EXPECT_EQ(View.createDemeString(true, '|'), "7|216172782113783808|360287970189639680|");
  View.generic_parents = true;
  View.path = "kept";
  View.events = {MOVE_TYPE::DEATH};
  View.clearView();
  EXPECT_EQ(selected(), "Europe Asia Berlin seven nine ");
  EXPECT_EQ(View.createDemeString(false, ';'), "");
  EXPECT_TRUE(View.generic_parents);
  EXPECT_EQ(View.path, "kept");
  EXPECT_EQ(View.events.size(), 1U);
}

TEST_F(Editing, TaxaAndUserFiltersAreChecked) {
  EXPECT_FALSE(View.addTaxon("generic"));
  EXPECT_FALSE(View.addTaxon("C"));
  for (const char* name : {"B", "A", "B"}) {
    EXPECT_TRUE(View.addTaxon(name));
  }
  EXPECT_EQ(View.createTaxonString(';'), "B;A;B;");
  EXPECT_FALSE(View.addUserView(-1, "red"));
  EXPECT_TRUE(View.user_filters.empty());
  EXPECT_TRUE(View.addUserView(0, "red"));
}

std::vector<day_number> period() {
  return {View.start_date, View.end_date, View.monitor_date};
}

TEST_F(Editing, ThePeriodShrinksToCensusYears) {
  // Census day and month, the period, and the period of whole census years.
  const std::tuple<int, int, const char*, const char*, const char*, const char*> cases[] = {
      {1, 1, "1990-03-05", "2000-06-30", "1991-01-01", "2000-01-01"},
      {1, 1, "1990-01-01", "2000-01-01", "1990-01-01", "2000-01-01"},
      {1, 7, "1990-03-05", "2000-06-30", "1990-07-01", "1999-07-01"},
      {31, 12, "1990-12-31", "2000-12-30", "1990-12-31", "1999-12-31"},
      {31, 2, "1992-02-29", "2001-02-28", "1992-02-29", "2001-02-28"},
      {0, 3, "1990-02-28", "2001-02-28", "1990-03-01", "2000-03-01"}};
  for (const auto& [day, month, start, end, new_start, new_end] : cases) {
    View.census_day = day;
    View.census_month = month;
    View.start_date = dayOf(start);
    View.end_date = dayOf(end);
    EXPECT_TRUE(View.autoMonitorDate());
    EXPECT_EQ(period(), std::vector({dayOf(new_start), dayOf(new_end), dayOf(new_end)}))
        << day << "/" << month << " in " << start << " to " << end;
  }
  View.census_day = 31;
  View.census_month = 12;
  View.start_date = dayOf("2000");
  View.end_date = 0xFFFFFFFF;
  EXPECT_TRUE(View.autoMonitorDate()) << "its year ends after the last day number";
  EXPECT_EQ(View.end_date, 0xFFFFFFFF - 348U) << "13 December back to the year before";
  const std::vector<day_number> unchanged[] = {{5, 0, 7}, {5, 10, 7}, {0xFFFFFFFF, 9999, 7}};
  for (const std::vector<day_number>& days : unchanged) {
    View.start_date = days[0];
    View.end_date = days[1];
    View.monitor_date = days[2];
    EXPECT_FALSE(View.autoMonitorDate());
    EXPECT_EQ(period(), days) << "no census date that is a date";
  }
  View.end_date = dayOf("2000");
  for (const int month : {-1, 0, 13}) {
    View.census_month = month;
    EXPECT_FALSE(View.autoMonitorDate()) << month;
  }
}

TEST_F(Editing, DemeTextsAreReadAs32BitNumbers) {
  EXPECT_TRUE(View.addDeme("3"));
  EXPECT_FALSE(View.extractDemeString(""));
  EXPECT_EQ(View.createDemeString(true, ';'), "216172782113783808;");
  EXPECT_TRUE(View.extractDemeString("9;8;7;"));
  EXPECT_EQ(View.createDemeString(false, ' '), "seven nine ");
  EXPECT_THROW(View.extractDemeString("7;216172782113783808;"), std::out_of_range);
  EXPECT_EQ(View.createDemeString(false, ' '), "seven ") << "what was read stays";
  for (const char* text : {";", "7;;9", "seven"}) {
    EXPECT_THROW(View.extractDemeString(text), std::invalid_argument) << text;
  }
}

TEST_F(Editing, DemeFilesNameOneDemeALine) {
  View.path = home;
  EXPECT_FALSE(View.loadDemeFile("zoos", "level 1"));
  EXPECT_EQ(takeErrors(), "Could not open " + home + "/zoos.fed\n");
  const std::string longest(1023, 'z');
  MetaPop.addMember("8", longest);
  writeContent(at("zoos.fed"), "# zoos\n\nAsia # the east\r\nEurope\r\nBerlin\n" + longest + "and more\nnine\nAsia");
  View.path = at("views");
  EXPECT_FALSE(View.loadDemeFile("../zoos", "level 1")) << "outside the directory";
  View.path = home;
  EXPECT_TRUE(View.loadDemeFile("zoos", "level 1"));
  EXPECT_EQ(View.createDemeString(false, ';'), "Europe;Asia;" + longest + ";");
}

}  // namespace
}  // namespace spx
