#include "spx/core/enumerations.h"

#include <gtest/gtest.h>

#include "spx/core/sex_choice.h"
#include "spx/support/random.h"

namespace spx {
namespace {

// All names of an enumeration, each after a comma, up to the first value without a name.
template <class Enum>
std::string namesOf() {
  std::string names;
  for (std::uint32_t value = 0; !getEnumName(Enum{value}).empty(); ++value) {
    names += "," + getEnumName(Enum{value});
  }
  return names;
}

TEST(EnumNames, AreThoseOfStudbooksAndReports) {
  EXPECT_EQ(namesOf<SEX>(), ",female,male,hermaphrodite,abnormal,unknown,all");
  EXPECT_EQ(namesOf<BIRTH_CONTROL>(), ",intact,neutered,vasectomy,contracepted,reversed,no selection");
  EXPECT_EQ(namesOf<MOVE_TYPE>(),
            ",birth,from wild,arrival,population in,social in,management in,released,population out"
            ",social out,management out,lost-to-follow-up,death,surplus,no event,all");
  EXPECT_EQ(namesOf<DATE_ACCURACY>(), ",accurate,by day,by week,by month,by year,date range,unknown,all dates");
  EXPECT_EQ(namesOf<BIRTH_TYPE>(), ",wild-born,captive-born,unknown,all");
  EXPECT_EQ(namesOf<REARING>(), ",parent,hand,foster,colony,supplemental,peer,none,unknown,all");
  EXPECT_EQ(namesOf<SORT_FIELD>(), ",no order,birth,death,studbook ID,sire ID,dam ID,event,location,unknown order");
  EXPECT_EQ(namesOf<REPRODUCTIVE_SYSTEM>(), ",oviparous,ovoviviparous,viviparous,unknown");
  EXPECT_EQ(namesOf<REPRODUCTIVE_SEASON>(), ",birth-flow,birth-pulse");
  EXPECT_EQ(namesOf<HANDLE_UNKNOWN>(), ",ignore,equal,observed ratio");
  EXPECT_EQ(namesOf<OFFSPRING_VIABILITY>(), ",all,stillbirths,non-viable,neonatal,viable");
  EXPECT_EQ(namesOf<qs_lib::TIME_INTERVAL>(), ",day,week,month,quarter,biannual,annual,biennial,five-year");
  EXPECT_EQ(getEnumName(SORT_ORDER{0}) + getEnumName(SORT_ORDER{7}), "ascendingdescending");
  EXPECT_EQ(getEnumName(SEX{~0U}), "");
}

TEST(SexChoice, GivesEverySexToAnimalsOfUnclearSexAndTakesTurnsFromMale) {
  std::string sexes;
  for (std::uint32_t sex = 0; sex < 6; ++sex) {
    sexes += getEnumName(oppositeSex(SEX{sex})) + " ";
  }
  for (int turn = 0; turn < 4; ++turn) {
    sexes += getEnumName(getEqualSex()) + " ";
  }
  EXPECT_EQ(sexes, "male female all all all all male female male female ");
}

// The first two words of the engine's standard seed are 3499211612 and 581869302; with the second
// one as the upper half the number drawn is 0.13547700.
TEST(SexChoice, DrawsTwoWordsAndComparesWithTheProbabilityOfMales) {
  std::mt19937 third;
  third.discard(2);
  for (const double probability : {0.0, 0.135476, 0.135478, 1.0}) {
    qs_lib::Random.setSeed(std::mt19937::default_seed);
    EXPECT_EQ(getRandomSex(probability), probability > 0.135477 ? SEX::MALE : SEX::FEMALE);
    EXPECT_EQ(qs_lib::Random.engine, third) << probability;
  }
}

}  // namespace
}  // namespace spx
