// From a studbook to numbers and back into the records.
#include "spx/genetics/studbook_pedigree.h"

#include <cmath>
#include <map>

#include "spx/genetics/founders.h"
#include "spx/genetics/inbreeding.h"
#include "spx/genetics/record_genetics.h"

#include "tests/core/family.h"

namespace spx {
namespace {

class StudbookGenetics : public StoreTest {
 protected:
  struct row {
    const char* id;
    const char* sire;
    const char* dam;
    BIRTH_TYPE origin = BIRTH_TYPE::UNKNOWN;
  };

  void load(const std::vector<row>& rows) {
    Animals.clearStudbook();
    Animals.initialize(rows.size());
    for (const row& each : rows) {
      master_data animal = animalOf(each.id, each.sire, each.dam, SEX::UNKNOWN, dayOf("2000-01-01"));
      animal.birth_type = each.origin;
      Animals.addMaster(animal);
    }
    Animals.createIndex(SORT_FIELD::STUDBOOK_ID);
    Animals.populationPedigree();
    takeOutput();
  }

  animal_number numberOf(const char* id) const { return book.number(Animals.findMaster(id)); }

  std::map<std::string, double> knownById() const {
    const std::vector<double> known = knownShares(book.pedigree());
    std::map<std::string, double> by_id;
    for (position record = 0; record < Animals.records.size(); ++record) {
      const animal_number number = book.number(record);
      if (number != UNKNOWN_SOURCE) by_id[Animals.records[record].stud_id] = known[number];
    }
    return by_id;
  }

  StudbookPedigree book;
};

TEST_F(StudbookGenetics, ReadsEveryKindOfParent) {
  load({{"1", "WILD", "WILD"},
        {"2", "UNKM", "UNKF"},
        {"3", "UNKM", "UNKF", BIRTH_TYPE::CAPTIVE_BORN},
        {"4", "WILD", "1"},
        {"5", "UNK", "1"},
        {"6", "X9", "1"},
        {"7", "HERD 1", "1"},
        {"8", "MULT", "HERD 1"},
        {"9", "HERD 2", "1"}});
  ASSERT_TRUE(book.build(Animals));
  EXPECT_EQ(
      knownById(),
      (std::map<std::string, double>{
          {"1", 1}, {"2", 1}, {"3", 0}, {"4", 1}, {"5", 0.5}, {"6", 1}, {"7", 0.5}, {"8", 1}, {"9", 0.5}, {"PX9", 1}}));
  const GeneticPedigree& pedigree = book.pedigree();
  EXPECT_EQ(pedigree.sire(numberOf("6")), numberOf("PX9"));
  EXPECT_EQ(pedigree.sire(numberOf("7")), UNKNOWN_SOURCE);
  EXPECT_TRUE(pedigree.isFounder(numberOf("8")));
  EXPECT_EQ(book.number(Animals.findMaster("WILD")), UNKNOWN_SOURCE);
  EXPECT_EQ(book.record(numberOf("9")), Animals.findMaster("9"));
}

TEST_F(StudbookGenetics, GroupsAndCandidatesShareAParent) {
  load({{"1", "WILD", "WILD"},
        {"2", "WILD", "WILD"},
        {"3", "WILD", "WILD"},
        {"4", "HERD 1", "3"},
        {"5", "1", "4"},
        {"6", "UNKM", "4"}});
  const multi_parent herd{"HERD 1", {"1", "2"}};
  const parent_candidates of_six{Animals.findMaster("6"), true, {0 + Animals.findMaster("2")}};
  ASSERT_TRUE(book.build(Animals, {std::span(&herd, 1), std::span(&of_six, 1)}));
  const std::vector<double> f = inbreedingOf(book.pedigree()).inbreeding;
  // 4 is the offspring of 1 with probability 1/2, so an offspring of 4 and 1 has F = 1/2 x 1/4.
  EXPECT_DOUBLE_EQ(f[numberOf("5")], 0.125);
  EXPECT_DOUBLE_EQ(f[numberOf("6")], 0.125);
  EXPECT_DOUBLE_EQ(knownById()["4"], 1);
  const multi_parent half_known{"HERD 1", {"1", "missing"}};
  ASSERT_TRUE(book.build(Animals, {std::span(&half_known, 1), {}}));
  EXPECT_DOUBLE_EQ(knownById()["4"], 0.75);
}

TEST_F(StudbookGenetics, NamesACycleByIds) {
  load({{"1", "3", "UNKF"}, {"2", "1", "UNKF"}, {"3", "2", "UNKF"}, {"4", "1", "UNKF"}});
  EXPECT_FALSE(book.build(Animals));
  EXPECT_EQ(book.cycle(), (std::vector<std::string>{"1", "3", "2"}));
  EXPECT_EQ(book.number(0), UNKNOWN_SOURCE);
}

TEST_F(StudbookGenetics, FillsWhatTheRecordsLack) {
  std::vector<row> rows{
      {"A", "WILD", "WILD"}, {"B", "WILD", "WILD"}, {"C", "A", "B"}, {"D", "A", "B"}, {"E", "C", "D"}};
  for (const char* order : {"as written", "the other way round"}) {
    SCOPED_TRACE(order);
    load(rows);
    Animals.records[Animals.findMaster("D")].fcoef = 0.5;
    Animals.records[Animals.findMaster("D")].generation[G_MATERNAL] = 7;
    ASSERT_TRUE(book.build(Animals));
    fillGenetics(Animals, book);
    EXPECT_EQ(idsOf(markFounderLineages(Animals, book)), "A B ");
    std::string facts;
    for (const char* id : {"A", "B", "C", "D", "E"}) {
      const master_data& animal = Animals.records[Animals.findMaster(id)];
      facts += animal.stud_id + " " + std::to_string(animal.fcoef) + " " +
               std::to_string(animal.generation[G_MATERNAL]) + " " +
               animal.lineages.to_string().substr(master_data::LINEAGES - 2) + "\n";
    }
    EXPECT_EQ(facts,
              "A 0.000000 0.000000 01\n"
              "B 0.000000 0.000000 10\n"
              "C 0.000000 1.000000 11\n"
              "D 0.500000 7.000000 11\n"
              "E 0.250000 2.000000 11\n");
    std::reverse(rows.begin(), rows.end());
  }
  EXPECT_TRUE(std::isnan(Animals.records[Animals.findMaster("UNKM")].generation[G_CITES]));
}

TEST_F(StudbookGenetics, KeepsTheBestFoundersOfMany) {
  std::vector<std::string> ids;
  for (int founder = 0; founder < 300; ++founder) ids.push_back(std::to_string(1000 + founder));
  std::vector<row> rows;
  for (const std::string& id : ids) rows.push_back({id.c_str(), "WILD", "WILD"});
  rows.push_back({"child", "1299", "1298"});
  load(rows);
  ASSERT_TRUE(book.build(Animals));
  const std::vector<position> founders = markFounderLineages(Animals, book);
  EXPECT_EQ(founders.size(), 255U);
  EXPECT_EQ(Animals.records[Animals.findMaster("child")].lineages.count(), 2U);
}

}  // namespace
}  // namespace spx
