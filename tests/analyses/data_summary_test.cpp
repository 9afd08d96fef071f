#include "spx/analyses/data_summary.h"

#include <iomanip>
#include <iostream>

#include "spx/views/data_filter.h"

#include "tests/core/family.h"
#include "tests/support/expected_file.h"

namespace spx {
namespace {

class Summaries : public StoreTest {
 protected:
  Summaries() {
    View.clearView();
    View.end_date = dayOf("2020-01-01");
  }

  // Adds an animal born `days` days before the end of the view; an age of 0 means that it is alive.
  static master_data& add(const char* id, const char* sire, const char* dam, SEX sex, int days, int age = 0) {
    const int birth = static_cast<int>(View.end_date) - days;
    Animals.addMaster(animalOf(id, sire, dam, sex, birth, age == 0 ? 0 : birth + age));
    return Animals.records.back();
  }
};

TEST_F(Summaries, CountEveryAnimalOnce) {
  Animals.initialize(8);
  Animals.addPseudoAnimal("GROUP 1", SEX::MALE, 1);
  add("1", "WILD", "WILD", SEX::MALE, 3650).birth.accuracy = DATE_ACCURACY::BY_YEAR;
  add("2", "WILD", "WILD", SEX::FEMALE, 4000, 3000).death.accuracy = DATE_ACCURACY::BY_MONTH;
  add("3", "1", "2", SEX::FEMALE, 2000, 1000).death.event = MOVE_TYPE::LOST_TO_FOLLOW_UP;
  add("4", "UNKM", "UNKF", SEX::UNKNOWN, 400).birth.range = 3285;              // the oldest by its range
  add("5", "GROUP 1", "UNKF", SEX{7}, -30).birth.accuracy = DATE_ACCURACY{9};  // not yet born
  add("6", "WILD", "WILD", SEX::HERMAPHRODITE, 10);
  add("7", "1", "WILD", SEX::MALE, 3660, 3685);  // dies after the end
  add("8", "UNKM", "2", SEX::MALE, 100, 100);    // dies at the end
  DataSummary summary;
  EXPECT_TRUE(summary.initialize());
  EXPECT_TRUE(summary.analyse());
  std::cout << std::left << std::setfill('*');
  summary.reportConsole();
  std::cout.fill(' ');
  expectFile(masked(takeOutput(), qs_lib::getTodayAsISO()), "analyses/expected/summary.txt");
}

TEST_F(Summaries, NameTheFirstOfTheOldest) {
  add("young", "WILD", "WILD", SEX::MALE, 9);
  add("first", "WILD", "WILD", SEX::MALE, 500, 10);
  add("second", "WILD", "WILD", SEX::MALE, 10);
  add("dead before birth", "WILD", "WILD", SEX::MALE, 5, -100);
  DataSummary summary;
  EXPECT_TRUE(summary.analyse());
  EXPECT_EQ(summary.oldest_id, "first");
  EXPECT_EQ(summary.oldest_age, 10);
  View.start_date = View.end_date - 9;
  View.end_date = 0;
  DataSummary at_start;
  EXPECT_TRUE(at_start.analyse());
  EXPECT_EQ(at_start.living, 2) << "without an end date the start counts";
}

TEST_F(Summaries, NeedAnimals) {
  DataSummary summary;
  EXPECT_FALSE(summary.initialize());
  EXPECT_EQ(takeErrors(), "No animals in list\n");
  Animals.initialize(0);
  EXPECT_TRUE(summary.initialize());
  EXPECT_TRUE(summary.analyse());
  EXPECT_EQ(summary.records + summary.living, 0) << "pseudo individuals only";
}

}  // namespace
}  // namespace spx
