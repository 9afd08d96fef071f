#include "spx/core/meta_population.h"

#include <cmath>

#include "spx/core/breeding_program.h"
#include "spx/core/sub_taxa.h"

#include "tests/support/expected_file.h"
#include "tests/support/temporary_home.h"

namespace spx {
namespace {

using Registries = TemporaryHome;

// Region 1 holds zoo 1.2, which holds the enclosure 1.2.3; there are two levels, so enclosures are
// kept among the zoos.
MetaPopulation smallPopulation() {
  MetaPopulation population;
  population.addLevel("region");
  population.addLevel("zoo");
  population.addMember("2", "Asia");
  population.addMember("1", "Europe", {52.5, 13.25});
  population.addMember("2.5", "Tokyo");
  population.addMember("1.2.3", "Tokyo");
  population.addMember("1.2", "Berlin");
  return population;
}

TEST_F(Registries, FindDemesInTheirLevels) {
  MetaPopulation population = smallPopulation();
  const packed_deme berlin = 0x0102000000000000;
  EXPECT_EQ(population.addMember("01.2", "Bonn", {1, 2}), berlin) << "the first name stays";
  EXPECT_EQ(population.getMemberName(berlin), "Berlin");
  EXPECT_EQ(population.getMemberGIS(0x0100000000000000).latitude, 52.5);
  EXPECT_EQ(population.addMember("0.0", "root"), -1);
  EXPECT_TRUE(population.memberExists("1.2.3")) << "kept in the last level";
  EXPECT_EQ(population.getDemeLevel("1.2.3"), 2);
  EXPECT_EQ(population.getMemberID("zoo", "Tokyo"), 0x0205000000000000);
  population.sortMembers(1);
  EXPECT_EQ(population.getMemberID("zoo", "Tokyo"), 0x0102030000000000) << "now the first";
  EXPECT_EQ(population.getMemberName(0x0205000000000000), "Tokyo");
}

TEST_F(Registries, AnswerNeutrallyAboutWhatTheyDoNotHold) {
  for (const MetaPopulation& population : {MetaPopulation(), smallPopulation()}) {
    for (const packed_deme id : {0LL, -1LL, 7LL, 0x0300000000000000LL}) {
      EXPECT_FALSE(population.memberExists(id)) << id;
      EXPECT_FALSE(population.isMemberSelected(id)) << id;
      EXPECT_EQ(population.getMemberName(id), "");
      EXPECT_TRUE(std::isnan(population.getMemberGIS(id).latitude));
    }
    EXPECT_EQ(population.getLevel("Zoo"), 0xFFFFFFFF);
    EXPECT_EQ(population.getMemberID("Zoo", "Berlin"), -1);
    EXPECT_EQ(population.getMemberID(0, "Berlin"), -1) << "of another level";
    EXPECT_EQ(population.getNumberOfMembers(2), 0U);
    EXPECT_EQ(takeErrors(), "Level does not exist\n");
  }
  MetaPopulation empty;
  EXPECT_EQ(empty.addMember("1", "lost"), -1);
  empty.selectMember("1", true);
  empty.sortMembers(0);
}

TEST_F(Registries, SelectWhatLiesWithinADeme) {
  // The flags of Asia, Europe, Tokyo, the enclosure and Berlin after the deme was deselected.
  const std::pair<const char*, const char*> cases[] = {{"1", "+-+--"},     {"2", "-+-++"},   {"1.2", "+++--"},
                                                       {"1.2.3", "+++-+"}, {"1.7", "+++++"}, {"0", "++---"}};
  for (const auto& [deme, flags] : cases) {
    MetaPopulation population = smallPopulation();
    population.selectMember(deme, false);
    std::string found;
    for (const deme_level& level : population.levels()) {
      for (const deme_member& member : level.members) {
        found += population.isMemberSelected(member.id) ? '+' : '-';
      }
    }
    EXPECT_EQ(found, flags) << deme;
  }
}

TEST_F(Registries, ListSortedLevels) {
  MetaPopulation population = smallPopulation();
  population.selectMember("2", false);
  population.listMetapopulation();
  population.listMembers(2);
  expectFile(takeOutput(), "core/expected/metapopulation.txt");
}

TEST_F(Registries, NumberProgrammes) {
  BreedingProgram management;
  EXPECT_EQ(management.addProgram("SSP"), 0U);
  EXPECT_EQ(management.addProgram("EEP"), 1U);
  EXPECT_EQ(management.addProgram("SSP"), 0U);
  EXPECT_EQ(management.getProgramID("eep"), 0U) << "unknown, as the first";
  EXPECT_FALSE(management.existProgram("eep"));
  const std::string rule(70, '=');
  management.listPrograms();
  EXPECT_EQ(takeOutput(), rule + "\nBreeding management programmes\n" + rule + "\n\nSSP\nEEP\n\n");
}

TEST_F(Registries, KeepTaxaInByteOrder) {
  SubTaxa taxa;
  const taxon_handle generic = taxa.getGeneric();
  for (const char* name : {"B", "A", "B", "zebra"}) {
    taxa.add(name);
  }
  EXPECT_EQ(taxa.getName(taxa.add("A")), "A");
  EXPECT_EQ(taxa.getGeneric(), generic);
  EXPECT_TRUE(taxa.listTaxa());
  EXPECT_EQ(takeOutput(), "Taxa defined:\n\t[0] A\n\t[1] B\n\t[2] generic\n\t[3] zebra\n\n");
  EXPECT_EQ(taxa.getName(taxa.end()) + taxa.getName(taxon_handle()), "");
  taxa.clear();
  EXPECT_FALSE(taxa.listTaxa());
  EXPECT_EQ(takeOutput() + takeErrors(), "No taxa have been defined\n");
}

}  // namespace
}  // namespace spx
