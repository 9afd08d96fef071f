#include "spx/analyses/listings.h"

#include <algorithm>
#include <tuple>

#include "tests/support/book_test.h"

namespace spx {
namespace {

using Listing = BookTest;

bool isPrinted(const master_data& animal) {
  return animal.print;
}

TEST_F(Listing, ShowsWholeTablesAndCards) {
  drawFamily();
  Animals.records[7].user_data = {"A-17", "red", "one too many"};
  View.high_generation = 0.5;
  View.low_generation = -1;
  bool (*const listings[])() = {
      [] { return listStudbookData(true); }, [] { return listStudbookData(false); },
      [] { return listLiving(); },           [] { return listOffspring("3"); },
      [] { return listOffspring("7"); },     [] { return listPedigree("5"); },
      [] { return listAnimal("3"); },        [] { return listAnimal("4") && listAnimal("5"); }};
  for (bool (*const list)() : listings) {
    const int shown = std::exchange(pauses, 0);
    EXPECT_TRUE(list());
    EXPECT_GT(std::exchange(pauses, shown), 0);
  }
  const std::string debug = masterDebug(Animals.records[7], "why") + masterDebug(Animals.records[8], "");
  expectFile(takeOutput() + debugHeader() + debug, "analyses/expected/listings.txt");
}

TEST_F(Listing, PausesAfterTwentyLinesOfAllListings) {
  for (int i = 0; i < 45; ++i) {
    add(std::to_string(i), "WILD", "WILD", SEX::MALE, "2000", berlin);
  }
  Animals.createIndex(SORT_FIELD::BIRTH);
  while (pauses == 0) {
    prnMaster(Animals.records[0]);  // other tests may have left lines on the page
  }
  takeOutput();
  std::size_t lines = 0;
  std::string pages;
  qs_lib::setPauseHandler([&] {
    const std::string page = takeOutput();
    lines += static_cast<std::size_t>(std::count(page.begin(), page.end(), '\n'));
    pages += std::to_string(lines) + " ";
  });
  EXPECT_TRUE(listStudbookData(true));
  EXPECT_TRUE(listStudbookData(true));
  // Headers of 2 and footers of 3 lines; the first listing leaves 5 lines on the page.
  EXPECT_EQ(pages, "22 42 50 67 87 100 ");
}

TEST_F(Listing, FollowsTheView) {
  drawFamily();
  Animals.records[11].birth.accuracy = DATE_ACCURACY{0xFFFFFFFF};  // -1 as a signed number
  const std::tuple<void (*)(), const char*, const char*> cases[] = {
      {[] {}, "1 2 3 4 5 O'Hara #6 7 ", "1 2 3 4 O'Hara #6 7 "},
      {[] { View.sex = SEX::FEMALE; }, "2 3 5 ", "2 3 "},
      {[] { View.origin = BIRTH_TYPE::WILD_BORN; }, "1 ", "1 "},
      {[] { View.birth_accuracy = DATE_ACCURACY::ACCURATE; }, "1 3 4 5 O'Hara #6 7 ", "1 3 4 O'Hara #6 7 "},
      {[] { View.death_accuracy = DATE_ACCURACY::BY_YEAR; }, "1 2 3 4 5 O'Hara #6 ", "1 2 3 4 O'Hara #6 7 "},
      {[] { View.low_generation = 0; }, "1 2 3 5 O'Hara #6 7 ", "1 2 3 O'Hara #6 7 "},
      {[] { View.low_inbreeding = 0.1; }, "1 2 4 5 O'Hara #6 7 ", "1 2 4 O'Hara #6 7 "},
      {[] { View.low_inbreeding = 0, View.high_inbreeding = 0.06; }, "1 2 4 5 O'Hara #6 7 ", "1 2 4 O'Hara #6 7 "},
      {[] { View.addTaxon("kob"); }, "O'Hara #6 ", "O'Hara #6 "},
      {[] { View.addUserView(0, "A-17"); }, "3 ", "3 "},
      {[] { View.addDeme("2"); }, "1 2 3 4 5 O'Hara #6 7 ", "4 7 "},
      {[] { View.monitor_date = dayFrom("1995-06-01"); }, "1 2 3 4 5 O'Hara #6 7 ", "1 2 "},
      {[] { Animals.selection(false); }, "", ""}};
  for (const auto& [set, listed, living] : cases) {
    resetView();
    set();
    listStudbookData(false);
    EXPECT_EQ(idsOf(isPrinted), listed);
    listLiving();
    EXPECT_EQ(idsOf(isPrinted), living) << listed;
  }
  EXPECT_TRUE(listOffspring("4"));
  EXPECT_EQ(idsOf(isPrinted), "7 ") << "the offspring of a sire";
}

TEST_F(Listing, ReportsWhatIsMissing) {
  const std::string empty = "No animals in list\n";
  const std::tuple<bool (*)(), std::string, const char*> cases[] = {
      {[] { return listStudbookData(true); }, empty, ""},
      {[] { return listLiving(); }, empty, ""},
      {[] { return listOffspring("x"); }, empty, "Can not find animal\n"},
      {[] { return listPedigree("x"); }, empty, "Animal does not exist\n"},
      {[] { return listAnimal("x"); }, "Cannot find animal.\n", "Cannot find animal.\n"}};
  for (const auto& [list, empty_store, unknown_animal] : cases) {
    Animals.clearStudbook();
    takeOutput();
    EXPECT_FALSE(list());
    EXPECT_EQ(takeErrors() + takeOutput(), empty_store);
    drawFamily();
    list();
    EXPECT_EQ(takeErrors(), unknown_animal);
  }
  Animals.pedigree.clear();
  Animals.records[7].sire_id = "no record";
  Animals.records.shrink_to_fit();
  EXPECT_TRUE(listPedigree(Animals.records[7].stud_id));  // the record, and so this ID, moves meanwhile
  takeOutput();
  Animals.index.clear();
  EXPECT_TRUE(listStudbookData(true));
  EXPECT_EQ(takeOutput(), studbookHeader() + studbookFooter());
}

}  // namespace
}  // namespace spx
