#include "spx/core/master_data.h"

#include <cmath>
#include <tuple>

#include "spx/core/master_map.h"
#include "spx/core/meta_population.h"

#include "tests/core/family.h"

namespace spx {
namespace {

TEST(MasterData, ResetLeavesWhatTheLoaderHasSet) {
  master_data animal = animalOf("7", "1", "2", SEX::MALE, 5, 9);
  animal.rearing = REARING::HAND;
  animal.birth = {5, DATE_ACCURACY::BY_YEAR, 3, 4, MOVE_TYPE::ARRIVAL, "first", 6, {}};
  animal.moves.resize(2);
  animal.birth_control.resize(2);
  animal.user_data.resize(2);
  animal.lineages.set();
  animal.breeder = true;
  animal.fcoef = animal.generation[G_AVERAGE] = 1;
  animal.taxon = Subspecies.end();
  animal.host_data.set({{1, 2}});
  animal.managed = {{{1, 2, 3, 4}}};
  EXPECT_TRUE(initializeManaged(animal.managed[0]));
  initializeMaster(animal);
  EXPECT_EQ(animal.stud_id + " " + animal.sire_id + " " + animal.dam_id, "7 UNKM UNKF");
  EXPECT_EQ(getEnumName(animal.sex) + " " + getEnumName(animal.rearing), "unknown hand");
  const master_data copy = animal;
  const std::string text = animal.birth.first_text;
  animal.birth.first_text = "";
  EXPECT_EQ(text + copy.birth.first_text.get() + animal.birth.first_text.get(), "firstfirst") << "deep";
  EXPECT_EQ("a " + copy.birth.first_text + " text" + copy.birth.second_text, "a first text");
  EXPECT_FALSE(copy.birth.first_text.empty());
  EXPECT_NE(copy.birth.first_text, copy.birth.second_text);
  EXPECT_EQ(copy.birth.first_text, "first");
  EXPECT_EQ(getEnumName(animal.birth.event), "arrival");
  EXPECT_EQ(animal.birth.date + animal.birth.range + animal.birth.number + animal.death.date, 0U);
  EXPECT_TRUE(animal.moves.empty());
  EXPECT_TRUE(animal.selected);
  EXPECT_TRUE(animal.print);
  EXPECT_EQ(animal.id_key + 1, 0U);
  EXPECT_TRUE(animal.birth_control.empty());
  EXPECT_TRUE(animal.user_data.empty());
  EXPECT_TRUE(animal.lineages.none());
  EXPECT_FALSE(animal.breeder);
  EXPECT_TRUE(std::isnan(animal.fcoef + animal.generation[G_AVERAGE]));
  EXPECT_EQ(animal.taxon, Subspecies.getGeneric());
  EXPECT_EQ(animal.host_data.get()[0].size(), 2U);
  EXPECT_EQ(animal.managed[0].words[2], 0U);
  EXPECT_EQ(animal.managed[0].words[3], 4U);
  EXPECT_TRUE(setFounderLineage(animal, 255));
  EXPECT_FALSE(setFounderLineage(animal, 256));
  EXPECT_TRUE(animal.lineages[255]);
  EXPECT_EQ(animal.lineages.count(), 1U);
}

TEST(MasterData, IsWhereTheLastRecordedMoveByThatDayTookIt) {
  master_data animal = animalOf("7", "1", "2", SEX::MALE, 100, 150);
  animal.birth.location = -1;
  for (const auto& [date, location] : {std::pair{300U, 3}, {200U, 2}, {4294967295U, 4}}) {
    animal.moves.push_back({date, {}, 0, location, MOVE_TYPE::ARRIVAL, {}, 0, {}});
  }
  const std::pair<qs_lib::day_number, packed_deme> days[] = {{0, -1},  {199, -1},       {200, 2},
                                                             {300, 2}, {4294967294, 2}, {4294967295, 4}};
  for (const auto& [day, deme] : days) {
    EXPECT_EQ(currentDeme(animal, day), deme) << day;
  }
}

TEST(MasterMap, HoldsTwelveFieldsAndOmitsLosses) {
  MetaPop.addLevel("zoo");
  master_data animal = animalOf("7", "S|1", "D\n2", SEX::HERMAPHRODITE, dayOf("2000"));
  animal.birth.location = MetaPop.addMember("3", "Old <zoo>");
  animal.fcoef = 0.03124;
  animal.generation[G_CITES] = -1;
  animal.generation[G_GENETIC] = 1.5;
  master_map expected = {{"DAM", "D\n2"},          {"SIRE", "S|1"},          {"BIRTHSITE", "Old <zoo>"},
                         {"DEATHAGE", ""},         {"DEATHDATE", ""},        {"BIRTHDATE", "2000-01-01"},
                         {"FCOEF", "0.0312"},      {"SEX", "hermaphrodite"}, {"GENERATION_C", "-1.00"},
                         {"GENERATION_G", "1.50"}, {"GENERATION_M", "nan"},  {"GENERATION_A", "nan"}};
  const std::tuple<const char*, MOVE_TYPE, const char*, const char*> ends[] = {
      {"2001", MOVE_TYPE::DEATH, "2001-01-01", "366.0"},
      {"2000", MOVE_TYPE::BIRTH, "2000-01-01", "0.0"},
      {"2001", MOVE_TYPE::LOST_TO_FOLLOW_UP, "NA", "NA"},
      {"", MOVE_TYPE::DEATH, "NA", "NA"},
      {"1999-12-31", MOVE_TYPE::DEATH, "1999-12-31", "4294967295.0"}};
  for (const auto& [day, event, date, age] : ends) {
    animal.death.date = dayOf(day);
    animal.death.event = event;
    expected["DEATHDATE"] = date;
    expected["DEATHAGE"] = age;
    EXPECT_EQ(masterToMap(animal), expected);
  }
}

}  // namespace
}  // namespace spx
