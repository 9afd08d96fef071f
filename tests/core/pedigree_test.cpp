#include <algorithm>
#include <random>
#include <set>

#include "tests/core/family.h"

namespace spx {
namespace {

constexpr char BY_ID[] = "12 20 21 21 30 31 40 9 MULT UNK UNKF UNKM WILD ";

class Pedigree : public FamilyTest {
 protected:
  Pedigree() { Animals.addPseudoParents(); }

  static std::string idsBy(position pedigree_record::*member) {
    std::vector<position> members;
    for (const pedigree_record& entry : Animals.pedigree) {
      members.push_back(entry.*member);
    }
    return idsOf(members);
  }
};

TEST_F(Pedigree, TiesAnimalsToTheFirstRecordOfTheirParents) {
  EXPECT_TRUE(Animals.populationPedigree());
  EXPECT_EQ(idsBy(&pedigree_record::animal), BY_ID);
  EXPECT_EQ(idsBy(&pedigree_record::sire), "WILD 12 12 12 UNK P99 21 WILD UNKM WILD WILD WILD WILD ");
  EXPECT_EQ(idsBy(&pedigree_record::dam), "WILD 9 9 9 20 20 30 WILD UNKF WILD WILD WILD WILD ");
  EXPECT_EQ(Animals.pedigree[6].sire, 3U) << "21 is the first of two";
}

TEST_F(Pedigree, OrdersFollowTheNumbersOfTheFields) {
  const std::pair<std::uint32_t, const char*> orders[] = {
      {1, "WILD UNKM UNKF MULT UNK 9 12 21 20 21 30 40 31 "},  // UNKM and UNKF are parents of MULT
      // 121995-06-01, ..., 212000-02-29, P992001-01-01, UNK2000-02-29, UNKM1801-01-01
      {5, "21 20 21 40 31 30 MULT WILD UNKM UNKF UNK 9 12 "},
      // 202000-02-29, 202001-01-01, 302000-02-29, 91995-06-01, ..., UNKF1801-01-01
      {6, "30 31 40 21 20 21 MULT WILD UNKM UNKF UNK 9 12 "},
      {4, "31 40 21 20 21 MULT WILD UNKM UNKF UNK 9 12 30 "}};
  Animals.records[5].id_key = 0;  // all others hold all bits: -1
  Animals.populationPedigree();
  EXPECT_TRUE(Animals.sortPedigree(SORT_FIELD::NO_ORDER)) << "the order after building";
  for (const std::uint32_t field : {2, 3, 7, 8, 9}) {
    EXPECT_FALSE(Animals.sortPedigree(SORT_FIELD{field})) << field;
  }
  EXPECT_EQ(idsBy(&pedigree_record::animal), BY_ID);
  for (const auto& [field, ids] : orders) {
    EXPECT_TRUE(Animals.sortPedigree(SORT_FIELD{field}));
    EXPECT_EQ(idsBy(&pedigree_record::animal), ids) << field;
  }
}

TEST_F(Pedigree, AnIndividualIsSelectedWithAllItsAncestors) {
  EXPECT_FALSE(Animals.individualPedigree("8"));
  EXPECT_EQ(takeErrors(), "Animal does not exist\n");
  const std::pair<const char*, const char*> individuals[] = {{"9", "9 WILD "},
                                                             {"21", "12 9 21 21 WILD "},
                                                             {"40", "12 9 20 21 30 40 WILD UNK "},
                                                             {"MULT", "WILD UNKM UNKF MULT "}};
  for (const auto& [id, selected] : individuals) {
    EXPECT_TRUE(Animals.individualPedigree(id));
    EXPECT_EQ(idsOf(flagged(&master_data::selected)), selected);
  }
  const position none = Animals.findMaster("none");
  flagParents({none - 1, 7, none, 0});
  EXPECT_EQ(idsOf(flagged(&master_data::breeder)), idsOf(std::set<position>{7}));
  EXPECT_TRUE(Animals.flagBreeders());
  EXPECT_EQ(idsOf(flagged(&master_data::breeder)), "12 9 20 21 30 WILD UNK UNKM UNKF P99 ");
  EXPECT_FALSE(Animals.breedersStale());
  EXPECT_TRUE(Animals.initializeLineages(255));
  EXPECT_FALSE(Animals.initializeLineages(256));
}

// Studbooks without any date. The parents of an animal have a lower rank, but records and IDs are
// in random order.
class Undated : public StoreTest {
 protected:
  static void add(const std::string& id, const std::string& sire, const std::string& dam) {
    Animals.addMaster(animalOf(id, sire, dam, SEX::MALE, 0));
  }

  static void collect(position animal, std::set<position>& found) {
    if (found.insert(animal).second) {
      collect(Animals.findMaster(Animals.records[animal].sire_id), found);
      collect(Animals.findMaster(Animals.records[animal].dam_id), found);
    }
  }

  static void expectAllAncestorsOf(position animal) {
    std::set<position> ancestors;
    collect(animal, ancestors);
    EXPECT_TRUE(Animals.individualPedigree(Animals.records[animal].stud_id));
    EXPECT_EQ(flagged(&master_data::selected), ancestors) << animal;
    EXPECT_TRUE(Animals.selectAncestors(Animals.records[animal].stud_id));
    EXPECT_EQ(flagged(&master_data::selected), ancestors) << animal;
  }
};

TEST_F(Undated, EveryAncestorIsSelected) {
  std::mt19937 random(3);
  std::vector<std::string> ids{"WILD"};
  add("WILD", "WILD", "WILD");
  for (unsigned rank = 1; rank < 300; ++rank) {
    ids.push_back(std::to_string(random()));
    add(ids.back(), ids[random() % rank], ids[random() % rank]);
  }
  std::shuffle(Animals.records.begin(), Animals.records.end(), random);
  for (position animal = 0; animal < Animals.records.size(); animal += 7) {
    expectAllAncestorsOf(animal);
  }
}

TEST_F(Undated, AnimalsBelowACycleKeepTheirAncestors) {
  const char* const animals[][3] = {{"a", "c", "b"}, {"b", "d", "g"}, {"c", "c", "e"}, {"d", "e", "d"},
                                    {"e", "d", "g"}, {"f", "a", "g"}, {"g", "g", "g"}};
  for (const auto& [id, sire, dam] : animals) {
    add(id, sire, dam);
  }
  for (const position animal : {0, 1, 2, 5, 6}) {
    expectAllAncestorsOf(animal);
  }
}

TEST_F(Undated, AHundredThousandGenerationsAreWalked) {
  add("999999", "999999", "999999");
  for (int id = 999998; id > 899999; --id) {
    add(std::to_string(id), std::to_string(id + 1), std::to_string(id + 1));
  }
  EXPECT_TRUE(Animals.individualPedigree("900000"));
  EXPECT_EQ(flagged(&master_data::selected).size(), 100000U);
  EXPECT_TRUE(Animals.selectAncestors("900000"));
  EXPECT_EQ(flagged(&master_data::selected).size(), 100000U);
}

// One animal has no date, and the oldest names the youngest as its sire, so that a walk by dates
// would stop early.
TEST_F(StoreTest, AncestorsAreCompleteWhateverTheDates) {
  EXPECT_FALSE(Animals.selectAncestors("c"));
  EXPECT_EQ(takeErrors(), "No animals in list\n");
  const std::pair<const char*, qs_lib::day_number> births[] = {{"e", 9}, {"d", 5000}, {"c", 0}, {"b", 100}, {"a", 50}};
  std::string offspring = "a";  // recorded as the sire of the oldest, which is a cycle
  for (const auto& [id, birth] : births) {
    Animals.addMaster(animalOf(id, offspring, std::string("missing ") + id, SEX::MALE, birth));
    offspring = id;
  }
  EXPECT_FALSE(Animals.selectAncestors("8"));
  EXPECT_EQ(takeErrors(), "Animal does not exist\n");
  for (const auto& [id, birth] : births) {
    EXPECT_TRUE(Animals.selectAncestors(Animals.records[Animals.findMaster(id)].stud_id));
    EXPECT_EQ(flagged(&master_data::selected).size(), 10U) << id;
  }
  EXPECT_TRUE(Animals.individualPedigree("c"));
  EXPECT_LT(flagged(&master_data::selected).size(), 10U);
}

}  // namespace
}  // namespace spx
