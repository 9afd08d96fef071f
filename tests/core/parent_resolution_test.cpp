#include <cmath>
#include <tuple>

#include "spx/support/directory.h"

#include "tests/core/family.h"

namespace spx {
namespace {

using Parents = StoreTest;
using Validation = FamilyTest;

// ID, sire, dam, sex, year of birth and a generation number.
std::string lineOf(const master_data& animal) {
  return animal.stud_id + " " + animal.sire_id + " " + animal.dam_id + " " + getEnumName(animal.sex) + " " +
         qs_lib::julianToISO(qs_lib::dayToMs(animal.birth.date)).substr(0, 4) +
         (std::isnan(animal.generation[G_MATERNAL]) ? "" : " generation");
}

TEST_F(Parents, PseudoIndividualsFollowTheirIdentifier) {
  Animals.initialize(0);
  std::string lines;
  for (const char* id : {"WILD7", "UNKLE", "wild"}) {
    EXPECT_TRUE(Animals.addPseudoFounder(id, SEX::MALE));
    EXPECT_FALSE(Animals.addPseudoFounder(id, SEX::FEMALE)) << "a second time";
  }
  for (const master_data& animal : Animals.records) {
    lines += lineOf(animal) + "\n";
    EXPECT_EQ(getEnumName(animal.rearing) + " " + getEnumName(animal.birth_type), "unknown unknown");
  }
  EXPECT_EQ(lines,
            "WILD WILD WILD unknown 1800 generation\nUNK WILD WILD unknown 1801\n"
            "UNKM WILD WILD male 1801\nUNKF WILD WILD female 1801\n"
            "MULT UNKM UNKF unknown 1801\nWILD7 WILD WILD male 1802 generation\n"
            "UNKLE WILD WILD male 1802\nwild UNKM UNKF male 1802\n");
}

TEST_F(Parents, TheWildMateOfAKnownParentGetsAnIdentity) {
  const char* const cases[][3] = {{"WILD", " 7\t", "P7+ 7\t"},
                                  {"7", "WILD", "7+P7"},
                                  {"8", "WILD", "8+P8"},
                                  {"WILD", "WILD", "WILD+WILD"},
                                  {"wild", "8", "wild+8"}};
  for (const auto& [sire, dam, parents] : cases) {
    master_data animal = animalOf("1", sire, dam, SEX::MALE, 1);
    EXPECT_EQ(Animals.checkPseudoFounder(animal), std::string(parents).find('P') < 9) << parents;
    EXPECT_EQ(animal.sire_id + "+" + animal.dam_id, parents);
  }
  ASSERT_EQ(Animals.records.size(), 2U) << "one founder for each known parent";
  EXPECT_EQ(lineOf(Animals.records[0]), "P7 UNKM UNKF male 1802");
  EXPECT_EQ(lineOf(Animals.records[1]), "P8 UNKM UNKF female 1802");
}

TEST_F(Parents, WildMatesOfAStudbookAreNamedAtOnce) {
  const char* const rows[][3] = {{"1", "WILD", "WILD"}, {"P9", "WILD", "8"}, {"3", "WILD", " 8"},
                                 {"4", "1", "WILD"},    {"5", "WILD", "9"},  {"6", "MULT2", "WILD"}};
  for (const auto& [id, sire, dam] : rows) {
    Animals.addMaster(animalOf(id, sire, dam, SEX::MALE, 1));
  }
  EXPECT_EQ(Animals.nameWildMates(), 2U) << "P8 and P1; P9 has a record";
  std::string parents;
  for (position record = 0; record < 6; ++record) {
    parents += Animals.records[record].sire_id + "+" + Animals.records[record].dam_id + " ";
  }
  EXPECT_EQ(parents, "WILD+WILD P8+8 P8+ 8 1+P1 P9+9 MULT2+WILD ");
  EXPECT_EQ(lineOf(Animals.records[6]) + lineOf(Animals.records[7]), "P8 UNKM UNKF male 1802P1 UNKM UNKF female 1802");
  EXPECT_EQ(Animals.nameWildMates(), 0U);
}

TEST_F(Parents, AMissingParentBecomesAPseudoFounderWithAWarningEachTime) {
  const std::string lines = "two\nlines", huge(1 << 20, '7');
  const std::tuple<std::string, SEX, std::string> cases[] = {
      {"1234", SEX::MALE, "P1234"},   {"1234", SEX::FEMALE, "P1234"}, {"P1234", SEX::MALE, "P1234"},
      {"", SEX::MALE, "P"},           {"UNK", SEX::MALE, "UNK"},      {"UNKX", SEX::MALE, "UNKM"},
      {"UNK 7", SEX::FEMALE, "UNKF"}, {"UNKX", SEX::ALL, "UNK"},      {lines, SEX::MALE, "P" + lines},
      {huge, SEX::MALE, "P" + huge}};
  Animals.initialize(0);
  for (const auto& [id, sex, found] : cases) {
    const std::string padded = id.size() < 8 ? std::string(8 - id.size(), ' ') + id : id;
    EXPECT_EQ(Animals.records[Animals.findParent(id, sex)].stud_id, found);
    const std::string warning = "Warning: record of parent id #" + padded + " does not exist, assume " + found + "\n";
    EXPECT_EQ(takeOutput(), id == found ? "" : warning);
  }
  EXPECT_EQ(Animals.records.size(), 9U) << "four founders beside the pseudo parents";
}

TEST_F(Validation, WritesWhatItFindsInTheOrderOfTheRecords) {
  Animals.addPseudoParents();
  Animals.addMaster(animalOf("Petra", "9", "9", SEX::MALE, 1));
  Animals.addMaster(animalOf("8", "9", "40", SEX::MALE, 1));
  Animals.addMaster(animalOf("50", "Pat", "Pat", SEX::MALE, 1));
  Animals.addMaster(animalOf("Pat", "UNK", "UNK", SEX::MALE, 1));
  Animals.records[16].taxon = Subspecies.add("north");  // not passed on, since it is a pseudo individual's
  Animals.records[2].taxon = Animals.records[7].taxon = Subspecies.add("north");
  Animals.records[0].taxon = Animals.records[1].taxon = Subspecies.add("south");
  EXPECT_TRUE(Animals.validate());
  EXPECT_EQ(takeErrors(), "Cannot write studbook error file\n");
  ASSERT_TRUE(qs_lib::createDir("~/spx"));
  ASSERT_TRUE(qs_lib::createDir("~/spx/projects"));
  writeContent(at("spx/projects/studbook-errors.txt"), "old");
  std::filesystem::create_hard_link(at("spx/projects/studbook-errors.txt"), at("old"));
  EXPECT_TRUE(Animals.validate());
  EXPECT_EQ(contentOf(at("old")), "old") << "replaced, not overwritten";
  EXPECT_EQ(takeErrors(), "");
  EXPECT_EQ(contentOf(at("spx/projects/studbook-errors.txt")),
            "Multiple master records of 21\n"
            "Multiple master records of 21\n"
            "30 is not a female!\n"
            "30 was born after birth of offspring 40\n"
            "9 is not a male!\n"
            "9 was born after birth of offspring 8\n"
            "40 is not a female!\n"
            "40 was born after birth of offspring 8\n");
  EXPECT_EQ(Animals.records[5].sire_id + Animals.records[6].sire_id, "UNKM99");
  EXPECT_EQ(idsOf(std::set{position{17}}), "P99 ");
  std::string taxa;
  for (const master_data& animal : Animals.records) {
    taxa += Subspecies.getName(animal.taxon)[0];
  }
  EXPECT_EQ(taxa, "ssnssggngggggggggg");
}

TEST_F(Validation, NamesMissingParentsWithTheirOffspring) {
  Animals.addPseudoParents();
  Animals.addMaster(animalOf("50", "99", "98", SEX::MALE, 1));
  Animals.addMaster(animalOf("51", "98", "98", SEX::MALE, 1));
  Animals.addMaster(animalOf("52", "UNK 7", "UNKF", SEX::MALE, 1));
  for (int time = 0; time < 2; ++time) {
    Animals.validate();
    std::string found;
    for (const missing_parent& parent : Animals.missing_parents) {
      found += parent.id + " " + getEnumName(parent.sex) + " " + Animals.records[parent.stand_in].stud_id + ": " +
               idsOf(parent.offspring) + "| ";
    }
    EXPECT_EQ(found, "99 male P99: 31 50 | 98 female P98: 50 51 | UNK 7 male UNKM: 52 | ") << "at every validation";
  }
  Animals.clearStudbook();
  EXPECT_TRUE(Animals.missing_parents.empty());
}

// Every founder that is added moves the records: no reference into them may be kept.
TEST_F(Parents, AStudbookOfOrphansIsCompletedWhileItGrows) {
  for (int animal = 0; animal < 300; ++animal) {
    const std::string id = std::to_string(animal);
    Animals.addMaster(animalOf(id, "the sire of " + id, "the dam of " + id, SEX::MALE, 9000000));
  }
  Animals.validate();
  EXPECT_EQ(Animals.records.size(), 900U);
  EXPECT_EQ(lineOf(Animals.records.back()), "Pthe dam of 299 UNKM UNKF female 1802");
}

}  // namespace
}  // namespace spx
