#include <cmath>

#include "spx/project/biology.h"

#include "tests/support/expected_file.h"
#include "tests/support/temporary_home.h"

namespace spx {
namespace {

using LifeHistoryParameters = TemporaryHome;

TEST_F(LifeHistoryParameters, AreSavedWithTheirTypesAndDescriptions) {
  Biology biology;
  biology.setDirectory(home);
  EXPECT_TRUE(biology.save());
  expectFile(contentOf(at("taxon.biology")), "project/expected/defaults.biology");
  biology.setReproductiveSeason(REPRODUCTIVE_SEASON::BIRTH_FLOW);
  EXPECT_EQ(biology.get("REPRODUCTIVE_SEASON").description, "Reproductive season: birth-flow");
  biology.setReproductiveSystem(REPRODUCTIVE_SYSTEM{77});
  EXPECT_EQ(biology.get("REPRODUCTIVE_SYSTEM").value, "77") << "stored though it has no name";
}

TEST_F(LifeHistoryParameters, BelongToTheTwoSexes) {
  Biology biology;
  for (std::uint32_t sex = 0; sex < 7; ++sex) {
    biology.setReproductiveAge(SEX{sex}, {10.0 + sex, 20.0 + sex});
    biology.setLongevity(SEX{sex}, 30.0 + sex);
  }
  for (std::uint32_t sex = 0; sex < 7; ++sex) {
    const auto [lower, upper] = biology.getReproductiveAge(SEX{sex});
    EXPECT_EQ(lower, sex < 2 ? 10.0 + sex : 0);
    EXPECT_EQ(upper, sex < 2 ? 20.0 + sex : 0);
    EXPECT_EQ(biology.getLongevity(SEX{sex}), sex < 2 ? 30.0 + sex : 0);
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
