#include "spx/views/predicates.h"

#include <cmath>
#include <fcntl.h>
#include <map>
#include <random>
#include <regex>
#include <tuple>
#include <unistd.h>

#include <sys/stat.h>

#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"
#include "spx/views/data_filter.h"

#include "tests/core/family.h"
#include "tests/support/expected_file.h"

namespace spx {
namespace {

using qs_lib::day_number;

constexpr day_number LAST_DAY = 0xFFFFFFFF;

// One character per answer: its letter for true, "-" for false.
std::string answers(const char* letters, std::initializer_list<bool> truths) {
  std::string text;
  for (const bool truth : truths) {
    text += truth ? *letters : '-';
    ++letters;
  }
  return text;
}

// Pseudo individual, multiple parent, same-litter parent, pseudo founder.
std::string kindsOf(const std::string& id) {
  return answers("pmlf", {isPseudoIndividual(id), isMultiParent(id), isSameLitterParent(id), isPseudoFounder(id)});
}

TEST(Identifiers, BelongToTheirKinds) {
  const std::string zeros(300, '0'), es(300, 'e'), million(1000000, '7');
  const std::map<std::string, std::vector<std::string>> ids_of_kinds = {
      {"----", {"", "12", "UN", " P1", "Pa\n", "MULT\n", "p" + es + "\n", "X" + zeros}},
      {"p---",
       {"P", "Pedro", "MULT", "colony", "WILD", "WILDX", "WILD 12a", "UNKX", "P\xC3\xA9", std::string("P\0b", 3),
        "p" + es}},
      {"pm--", {"MULTI", "GROUP A", "GROUP" + million + "x"}},
      {"pml-", {"MULT3", "MULTI42", "herd7", "mULTi" + zeros}},
      {"p-l-", {"unk3", "UNKM 3"}},
      {"p-lf", {"P1", "WILD 12", "wild \t4", "wILd " + zeros, "P" + million}},
      {"--l-", {"MULT\n3", "MULT\n" + zeros}},
      {"--lf", {"P\n1", "WILD\r\n1", "P\n" + zeros}}};
  for (const auto& [kinds, ids] : ids_of_kinds) {
    for (const std::string& id : ids) {
      EXPECT_EQ(kindsOf(id), kinds) << id.substr(0, 40);
    }
  }
}

// Identifiers longer than 256 characters are matched by different code than shorter ones; both must
// agree with the regular expressions.
TEST(Identifiers, AgreeWithTheExpressionsAtEveryLength) {
  std::vector<std::regex> expressions;
  for (const char* text : {R"((COLONY|GROUP|HERD|MULTI?|UNK[NMF]?|WILD|P).*)", R"((COLONY|GROUP|HERD|MULTI?).+)",
                           R"((COLONY|GROUP|HERD|MULTI?|UNK[NMF]?|WILD|P)\s*\d+)", R"((P|WILD)\s*\d+)"}) {
    expressions.emplace_back(text, std::regex::ECMAScript | std::regex::icase);
  }
  const char* const beginnings[] = {"COLONY", "gRoup", "HERD", "MULT",  "mulTI", "UNK", "unkn",
                                    "UNKM",   "uNKf",  "WILD", "wild ", "p",     "HER"};
  const std::string others("\n\r\t\v\f .iIa\0\xE9", 12);
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    std::string id = beginnings[random() % std::size(beginnings)];
    id.append(random() % 3, others[random() % others.size()]);
    const std::size_t length = i % 2 == 0 ? random() % 8 : 245 + random() % 20;
    id.append(std::max(length, id.size()) - id.size(), '4');
    id.append(random() % 4 == 0, others[random() % others.size()]);
    const auto is = [&](int kind) { return std::regex_match(id, expressions[kind]); };
    ASSERT_EQ(kindsOf(id), answers("pmlf", {is(0), is(1), is(2), is(3)})) << testing::PrintToString(id);
  }
}

TEST(Days, WrapWhereADifferenceWouldBeNegative) {
  // Whether an animal born on day 100 is living on a day, by its death.
  const std::tuple<day_number, day_number, bool> lives[] = {{0, LAST_DAY, true}, {LAST_DAY, LAST_DAY, false},
                                                            {200, 199, true},    {200, 200, false},
                                                            {100, 100, false},   {99, 100, false},
                                                            {0, 99, false},      {LAST_DAY, 99, false}};
  for (const auto& [death, day, living] : lives) {
    const master_data record = animalOf("1", "", "", SEX::MALE, 100, death);
    EXPECT_EQ(isLiving(record, day), living) << "death " << death << " on " << day;
  }
  const master_data mate = animalOf("2", "", "UNKF", SEX::MALE, 100, 99);
  EXPECT_FALSE(isNeonatalDeath(mate, 4294967294.0)) << "dead a day before its birth";
  EXPECT_TRUE(isNeonatalDeath(mate, 4294967295.0));
  EXPECT_FALSE(isNeonatalDeath(mate, NAN));
  EXPECT_TRUE(isSameLitter(mate, "UNKF", 95, 5));
  EXPECT_FALSE(isSameLitter(mate, "UNKF", 94, 5));
  EXPECT_FALSE(isSameLitter(mate, "UNKF", 101, 1e9)) << "born before the date";
  EXPECT_FALSE(isSameLitter(mate, "unkf", 100, 5)) << "dams are compared with their case";
}

TEST(Ranges, TreatMissingBoundsAsymmetrically) {
  const std::tuple<double, double, double, bool> cases[] = {
      {NAN, 0, 1, true},      {0.5, NAN, NAN, true}, {0.5, NAN, 1, false},   {0.5, 0.2, NAN, true},
      {0.1, 0.2, NAN, false}, {0.2, 0.2, 0.2, true}, {0.3, 0.1, 0.2, false}, {NAN, NAN, 1, true}};
  for (const auto& [value, low, high, inside] : cases) {
    EXPECT_EQ(isInFcoef(value, low, high), inside) << value << " in " << low << " to " << high;
    EXPECT_EQ(isInGeneration(value, low, high), inside);
  }
}

TEST(Sexes, MatchListsAndPartners) {
  EXPECT_FALSE(isInSex(SEX::MALE, {}));
  EXPECT_TRUE(isInSex(SEX::FEMALE, {SEX::MALE, SEX::ALL}));
  EXPECT_FALSE(isInSex(SEX::ALL, {SEX::MALE}));
  EXPECT_TRUE(isOppositeSex(SEX::HERMAPHRODITE, SEX::ALL));
  EXPECT_TRUE(isOppositeSex(SEX::MALE, SEX::FEMALE));
  EXPECT_TRUE(isOppositeSex(SEX::FEMALE, SEX::MALE));
  EXPECT_FALSE(isOppositeSex(SEX::HERMAPHRODITE, SEX::FEMALE));
}

class ViewPredicates : public StoreTest {
 protected:
  ViewPredicates() {
    MetaPop = MetaPopulation();
    MetaPop.addLevel("region");
    in_view = MetaPop.addMember("1", "in");
    outside = MetaPop.addMember("2", "out");
    View.clearView();
    View.addDeme(in_view);
  }

  packed_deme in_view = 0;
  packed_deme outside = 0;
};

TEST_F(ViewPredicates, FollowTheMovesInRecordedOrder) {
  // The birth and then a move every 10 days: i(n), o(ut) or x for an unknown place. Arrival,
  // removal and whether the animal moved in from day 20 to 40.
  const std::tuple<std::string, day_number, day_number, bool> cases[] = {
      {"i", 0, 0, false},   {"io", 0, 10, false},   {"oi", 10, 0, false},    {"oio", 10, 20, false},
      {"ooi", 20, 0, true}, {"iio", 10, 20, false}, {"ooooi", 40, 0, false}, {"oioi", 10, 20, true},
      {"xxx", 0, 0, false}, {"ix", 0, 10, false}};
  for (const auto& [places, arrival, removal, moved] : cases) {
    master_data record = animalOf("1", "", "", SEX::MALE, 0);
    for (const char place : places) {
      move_data move;
      move.date = 10 * record.moves.size();
      move.location = place == 'i' ? in_view : place == 'o' ? outside : 77;
      record.moves.push_back(move);
    }
    record.birth = record.moves.front();
    record.moves.erase(record.moves.begin());
    EXPECT_EQ(arrivalDemeView(record), arrival) << places;
    EXPECT_EQ(removalDemeView(record), removal) << places;
    EXPECT_EQ(movedToDemeView(record, {20, 40}), moved) << places;
  }
}

TEST_F(ViewPredicates, FilterByUserFieldsAndTaxa) {
  master_data record = animalOf("1", "", "", SEX::MALE, 1);
  record.user_data = {"red", ""};
  View.addUserView(0, "RED");
  EXPECT_TRUE(isInUserView(record)) << "no fields are defined";
  user_field_list = {{"colour"}, {"size"}, {"tag"}};
  EXPECT_FALSE(isInUserView(record));
  View.user_filters = {{0, "red"}, {1, ""}, {2, ""}};
  EXPECT_TRUE(isInUserView(record)) << "a value that the record lacks is empty";
  View.addUserView(2, "7");
  EXPECT_FALSE(isInUserView(record)) << "all filters must match";
  user_field_list.clear();

  EXPECT_TRUE(isInTaxonView(record));
  View.taxa = {Subspecies.add("borealis")};
  EXPECT_FALSE(isInTaxonView(record));
  record.taxon = Subspecies.add("borealis");
  EXPECT_TRUE(isInTaxonView(record));
}

TEST_F(ViewPredicates, AreDumpedForEveryRecord) {
  // Bred, born, dead.
  const std::tuple<const char*, const char*, const char*, bool, int, int> animals[] = {
      {"1", "WILD", "WILD", true, 100, 0},        {"2", "WILD", "WILD", true, 100, 140},
      {"3", "WILD", "WILD", false, 100, 0},       {"4", "WILD", "WILD", false, 100, 131},
      {"P5", "WILD", "WILD", true, 100, 0},       {"p 6", "WILD", "WILD", false, 100, 140},
      {"7", "wild", "WILD", true, 151, 0},        {"8", "WILD", "WILD", false, 151, 181},
      {"9", "WILD 3", "UNK", false, 100, 130},    {"wild 10", "MULT", "WILD12", true, 100, 151},
      {"11", "wild 3", "WILDX", false, 140, 140}, {"12", "UNK", "MULTI", false, 100, 100},
      {"13", "GROUP 7", "UNKF", true, 150, 151},  {"14", "WIL", "", false, 120, 119}};
  for (const auto& [id, sire, dam, bred, born, dead] : animals) {
    Animals.addMaster(animalOf(id, sire, dam, bred ? SEX::MALE : SEX::UNKNOWN, born, dead));
    master_data& record = Animals.records.back();
    record.breeder = bred;
    record.print = born > 100;
    record.birth.location = born > 100 ? in_view : outside;
    record.selected = dead == 0;
  }
  Animals.records[10].death.event = MOVE_TYPE::LOST_TO_FOLLOW_UP;
  View.monitor_date = 150;
  std::filesystem::current_path(home);
  EXPECT_TRUE(TestFilters());
  EXPECT_EQ(takeOutput(), "Writing filter to: filter_test.csv\n");
  expectFile(contentOf("filter_test.csv"), "views/expected/filter_test.csv");
  const int old_file = ::open("filter_test.csv", O_RDONLY);
  EXPECT_TRUE(TestFilters());
  struct stat facts {};
  EXPECT_EQ(::fstat(old_file, &facts), 0) << "replaced, not written over";
  EXPECT_EQ(facts.st_nlink, 0U) << "replaced, not written over";
  ::close(old_file);
  EXPECT_TRUE(TestFilters(at("elsewhere.csv")));
  EXPECT_EQ(takeOutput(), "Writing filter to: filter_test.csv\n") << "the second file is not announced";
  expectFile(contentOf("elsewhere.csv"), "views/expected/filter_test.csv");
  EXPECT_FALSE(TestFilters(at("missing/table.csv")));
  EXPECT_TRUE(isLivingFounder(Animals.records[0], 150));
  EXPECT_FALSE(isLivingFounder(Animals.records[1], 150));
  EXPECT_FALSE(isLivingFounder(Animals.records[2], 150));
}

}  // namespace
}  // namespace spx
