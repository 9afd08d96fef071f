#include "spx/core/enumerations.h"

#include <gtest/gtest.h>

#include "spx/core/sex_choice.h"
#include "spx/support/random.h"

namespace spx {
namespace {

TEST(EnumNames, EndWithTheTable) {
  EXPECT_EQ(getEnumName(SEX{5}) + getEnumName(BIRTH_CONTROL{5}) + getEnumName(MOVE_TYPE{14}) +
                getEnumName(DATE_ACCURACY{7}) + getEnumName(BIRTH_TYPE{3}) +
                getEnumName(REARING{8}) + getEnumName(SORT_FIELD{8}),
            "allno selectionallall datesallallunknown order");
  EXPECT_EQ(getEnumName(REPRODUCTIVE_SYSTEM{3}) + getEnumName(REPRODUCTIVE_SEASON{1}) +
                getEnumName(HANDLE_UNKNOWN{2}) + getEnumName(OFFSPRING_VIABILITY{4}) +
                getEnumName(qs_lib::TIME_INTERVAL{7}) + getEnumName(SORT_ORDER{7}),
            "unknownbirth-pulseobserved ratioviablefive-yeardescending");
  EXPECT_EQ(getEnumName(SEX{6}) + getEnumName(MOVE_TYPE{15}) + getEnumName(SORT_FIELD{~0U}), "");
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
