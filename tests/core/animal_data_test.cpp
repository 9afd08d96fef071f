#include "spx/core/animal_data.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <set>

#include "spx/core/record_index.h"

#include "tests/core/family.h"

namespace spx {
namespace {

using Store = FamilyTest;

TEST_F(StoreTest, ReportsThatItIsEmpty) {
  EXPECT_FALSE(Animals.createIndex(SORT_FIELD::BIRTH));
  EXPECT_FALSE(Animals.createLookup());
  EXPECT_FALSE(Animals.assignIdKeys());
  EXPECT_FALSE(Animals.validate());
  EXPECT_FALSE(Animals.flagBreeders());
  EXPECT_FALSE(Animals.individualPedigree("1"));
  EXPECT_FALSE(Animals.initializeLineages(1));
  const std::string none = "No animals in list\n";
  EXPECT_EQ(takeErrors(), none + none + none + none + none + none + none);
  EXPECT_FALSE(Animals.initializeLineages(0));
  EXPECT_FALSE(Animals.sortList(SORT_FIELD::STUDBOOK_ID));
  EXPECT_EQ(takeErrors(), "No index created\n");
}

TEST_F(StoreTest, ReservesMemoryOrReportsThatThereIsNone) {
  AnimalData store;
  EXPECT_FALSE(store.initialize(SIZE_MAX));
  EXPECT_EQ(takeErrors(), "Cannot reserve room for animals\n");
  EXPECT_TRUE(store.records.empty());
  EXPECT_TRUE(store.initialize(100));
  EXPECT_TRUE(store.info());
  const std::string rule = std::string(70, '=') + "\n", last = std::string(70, '-') + "\n";
  const std::string most = std::to_string(PTRDIFF_MAX / sizeof(master_data)) + "\n";
  EXPECT_EQ(takeOutput(), rule + "Memory usage of studbook data\n" + rule +
                              "\nAllocated records       : 105\nUsed records            : 5 (4.8%)\n"
                              "Maximum records         : " +
                              most + last);
}

TEST_F(Store, OrdersFollowTheNumbersOfTheFields) {
  const char* const orders[] = {"12 9 20 21 21 30 31 40 ", "9 12 21 20 21 30 40 31 ", "12 9 20 21 30 31 40 21 ",
                                "12 20 21 21 30 31 40 9 ", "31 9 12 21 20 21 30 40 ", "20 21 21 40 31 30 12 9 ",
                                "30 31 40 20 21 21 12 9 ", "12 9 20 21 21 30 31 40 ", "12 9 20 21 21 30 31 40 ",
                                "12 9 20 21 21 30 31 40 "};
  Animals.assignIdKeys();
  Animals.records[6].id_key = UINT64_MAX;  // -1 as a signed number, so it comes first
  for (std::uint32_t field = 0; field < std::size(orders); ++field) {
    Animals.resetOrder();
    Animals.createIndex(SORT_FIELD::NO_ORDER);
    EXPECT_EQ(Animals.sortList(SORT_FIELD{field}), field < 9);
    EXPECT_EQ(idsOf(Animals.index), orders[field]) << field;
    EXPECT_EQ(Animals.sortField(), SORT_FIELD{field == 7 || field == 9 ? 0 : field});
  }
  Animals.createIndex(SORT_FIELD::DEATH);
  Animals.createIndex(SORT_FIELD::DEATH);
  EXPECT_EQ(idsOf(Animals.index), orders[0]) << "a recorded order is not sorted again";
  Animals.addMaster(Animals.records[0]);
  EXPECT_TRUE(Animals.sortList(SORT_FIELD::DEATH));
  EXPECT_EQ(idsOf(Animals.index), orders[2]) << "adding forgets the order";
}

TEST_F(Store, TheLookupFindsTheLastDuplicateAndTheScanTheFirst) {
  EXPECT_TRUE(Animals.createLookup());
  EXPECT_EQ(Animals.lookup.at("21"), 4U);
  EXPECT_EQ(Animals.findMaster("21"), 3U);
  EXPECT_FALSE(Animals.animalExists("21 "));
  EXPECT_TRUE(Animals.validate());
  EXPECT_TRUE(Animals.flagBreeders());
  EXPECT_FALSE(Animals.inconsistencies.empty());
  Animals.clearStudbook();
  EXPECT_TRUE(Animals.inconsistencies.empty());
  EXPECT_TRUE(Animals.breedersStale());
  EXPECT_TRUE(Animals.lookup.empty());
  EXPECT_EQ(Animals.sortField(), SORT_FIELD::STUDBOOK_ID);
}

// Numbers with and without leading zeros, short texts and texts of a megabyte, with NULs, line
// breaks and bytes beyond ASCII, most of them several times: the growing index of IDs must find the
// same records as a scan.
TEST_F(StoreTest, SearchesAndOrdersTakeAnyBytes) {
  std::mt19937 random(7);
  RecordIndex known(Animals.records);
  for (int animal = 0; animal < 2000; ++animal) {
    std::string id(animal % 500 == 9 ? 1 << 20 : random() % 20, 'a');
    std::generate_n(id.rbegin(), id.size() % 5, [&] { return "aq\0\xFF\n"[random() % 5]; });
    if (animal % 3 == 0) {
      id = std::string(random() % 2, '0') + std::to_string(random() % 1000 << random() % 20);
    }
    ASSERT_EQ(known.find(id), Animals.findMaster(id));
    Animals.addMaster(animalOf(id, id, id, SEX::MALE, random() % 50));
    known.addNext();
  }
  const RecordIndex whole(Animals.records);
  for (const master_data& animal : Animals.records) {
    const find_id has_id{animal.stud_id};
    const position record = Animals.findMaster(animal.stud_id);
    const bool twice = std::count_if(Animals.records.begin(), Animals.records.end(), has_id) > 1;
    ASSERT_EQ(known.find(animal.stud_id), record);
    ASSERT_EQ(known.isDuplicate(record), twice);
    ASSERT_EQ(whole.find(animal.stud_id), record);
    ASSERT_EQ(whole.isDuplicate(record), twice);
    ASSERT_EQ(whole.findSire(record), record);
    ASSERT_EQ(whole.sireId(record), animal.sire_id);
  }
  Animals.createIndex(SORT_FIELD::STUDBOOK_ID);
  const auto later = [](position a, position b) { return Animals.records[a].stud_id > Animals.records[b].stud_id; };
  EXPECT_EQ(std::adjacent_find(Animals.index.begin(), Animals.index.end(), later), Animals.index.end());
  EXPECT_EQ(std::set(Animals.index.begin(), Animals.index.end()).size(), 2000U);
}

// More animals than are sorted at once, equal dates and beginnings among them.
TEST_F(StoreTest, LargeStudbooksAreOrderedWhole) {
  std::mt19937 random(11);
  Animals.initialize(70000);
  for (int animal = 0; animal < 70000; ++animal) {
    const std::string number = std::to_string(random() >> animal % 20);
    const std::string id =
        animal % 7 == 0 ? "the same name of several animals" : (animal % 3 == 0 ? "house-" : "") + number;
    Animals.addMaster(animalOf(id, "UNK", "UNK", SEX::MALE, random() % 30000));
  }
  const auto expectOrder = [](SORT_FIELD field, auto keyOf) {
    std::vector<position> order(Animals.records.size());
    std::iota(order.begin(), order.end(), position{0});
    std::stable_sort(order.begin(), order.end(), [&keyOf](position a, position b) {
      return keyOf(Animals.records[a]) < keyOf(Animals.records[b]);
    });
    Animals.resetOrder();
    Animals.createIndex(field);
    EXPECT_EQ(Animals.index, order) << static_cast<int>(field);
  };
  expectOrder(SORT_FIELD::STUDBOOK_ID, [](const master_data& each) { return each.stud_id; });
  expectOrder(SORT_FIELD::BIRTH, [](const master_data& each) { return each.birth.date; });
}

}  // namespace
}  // namespace spx
