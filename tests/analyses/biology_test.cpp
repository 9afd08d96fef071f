#include "spx/analyses/biology.h"

#include <cmath>

#include "tests/support/temporary_home.h"

namespace spx {
namespace {

using LifeHistoryParameters = TemporaryHome;

TEST_F(LifeHistoryParameters, AreSavedWithTheirTypesAndDescriptions) {
  Biology biology;
  EXPECT_EQ(biology.getDirectory(), "") << "the host's affair";
  biology.setDirectory(home);
  EXPECT_TRUE(biology.save());
  const std::string defaults =
      contentOf(SPX_SOURCE_DIR "/tests/analyses/expected/defaults.biology");
  EXPECT_EQ(contentOf(at("taxon.biology")), defaults);

  biology.setReproductiveSeason(REPRODUCTIVE_SEASON::BIRTH_FLOW);
  EXPECT_EQ(biology.get("REPRODUCTIVE_SEASON").description, "Reproductive season: birth-flow");
  biology.setReproductiveSystem(REPRODUCTIVE_SYSTEM{77});
  EXPECT_EQ(biology.get("REPRODUCTIVE_SYSTEM").value, "77") << "stored though it has no name";
  biology.initialize();
  EXPECT_TRUE(biology.save());
  EXPECT_EQ(contentOf(at("taxon.biology")), defaults);
}

TEST_F(LifeHistoryParameters, BelongToTheTwoSexes) {
  Biology biology;
  biology.setReproductiveAge(SEX::MALE, {1, 2});
  biology.setReproductiveAge(SEX::FEMALE, {3, 4});
  biology.setLongevity(SEX::MALE, 5);
  biology.setLongevity(SEX::FEMALE, 6);
  for (std::uint32_t sex = 2; sex < 7; ++sex) {
    biology.setReproductiveAge(SEX{sex}, {7, 8});
    biology.setLongevity(SEX{sex}, 9);
  }
  constexpr double expected[][3] = {{3, 4, 6}, {1, 2, 5}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
  for (std::uint32_t sex = 0; sex < 5; ++sex) {
    EXPECT_EQ(biology.getReproductiveAge(SEX{sex}).lower, expected[sex][0]) << sex;
    EXPECT_EQ(biology.getReproductiveAge(SEX{sex}).upper, expected[sex][1]) << sex;
    EXPECT_EQ(biology.getLongevity(SEX{sex}), expected[sex][2]) << sex;
  }
  EXPECT_EQ(biology.entries().size(), Biology().entries().size());
}

TEST_F(LifeHistoryParameters, AreReadAsTheyWereWritten) {
  Biology biology;
  biology.setGestation(283.456);
  EXPECT_EQ(biology.getGestation(), 283.46);
  biology.setBirthInterval({-1, NAN});
  EXPECT_EQ(biology.getBirthInterval().lower, -1);
  EXPECT_TRUE(std::isnan(biology.getBirthInterval().upper));
  biology.set("GESTATION", "REAL", "long", "");
  EXPECT_TRUE(std::isnan(biology.getGestation()));
  biology.clearEntries();
  EXPECT_TRUE(std::isnan(biology.getLongevity(SEX::MALE))) << "an absent entry";
}

}  // namespace
}  // namespace spx
