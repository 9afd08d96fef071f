#include "spx/views/predicates.h"

#include <cmath>
#include <random>
#include <regex>

#include <gtest/gtest.h>

#include "spx/core/animal_data.h"
#include "spx/reports/user_fields.h"
#include "spx/views/data_filter.h"
#include "spx/views/meta_population.h"

#include "tests/support/temporary_home.h"

namespace spx {
namespace {

using qs_lib::day_number;

constexpr day_number LAST_DAY = 0xFFFFFFFF;

struct identifier_case {
  std::string id;
  const char* kinds;  ///< pseudo, multiple parent, same litter, pseudo founder: a letter or "-"
};

std::string kindsOf(const std::string& id) {
  return std::string(isPseudoIndividual(id) ? "p" : "-") + (isMultiParent(id) ? "m" : "-") +
         (isSameLitterParent(id) ? "l" : "-") + (isPseudoFounder(id) ? "f" : "-");
}

TEST(Identifiers, BelongToTheirKinds) {
  const std::string zeros(300, '0'), letters(300, 'e'), million(1000000, '7');
  const identifier_case cases[] = {{"", "----"},
                                   {"12", "----"},
                                   {"P", "p---"},
                                   {"Pedro", "p---"},
                                   {"P1", "p-lf"},
                                   {"MULT", "p---"},
                                   {"MULTI", "pm--"},
                                   {"MULT3", "pml-"},
                                   {"MULTI42", "pml-"},
                                   {"GROUP A", "pm--"},
                                   {"herd7", "pml-"},
                                   {"colony", "p---"},
                                   {"WILD 12", "p-lf"},
                                   {"wild \t4", "p-lf"},
                                   {"WILD", "p---"},
                                   {"WILDX", "p---"},
                                   {"WILD 12a", "p---"},
                                   {"unk3", "p-l-"},
                                   {"UNKM 3", "p-l-"},
                                   {"UNKX", "p---"},
                                   {"UN", "----"},
                                   {" P1", "----"},
                                   {"P\n1", "--lf"},
                                   {"WILD\r\n1", "--lf"},
                                   {"Pa\n", "----"},
                                   {"MULT\n", "----"},
                                   {std::string("P\0b", 3), "p---"},
                                   {"P\xC3\xA9", "p---"},
                                   {"P" + zeros, "p-lf"},
                                   {"wILd " + zeros, "p-lf"},
                                   {"mULTi" + zeros, "pml-"},
                                   {"p" + letters, "p---"},
                                   {"p" + letters + "\n", "----"},
                                   {"P" + zeros + "\n", "----"},
                                   {"P\n" + zeros, "--lf"},
                                   {"MULT\n" + zeros, "--l-"},
                                   {"X" + zeros, "----"},
                                   {"P" + million, "p-lf"},
                                   {"GROUP" + million + "x", "pm--"}};
  for (const auto& [id, kinds] : cases) {
    EXPECT_EQ(kindsOf(id), kinds) << id.substr(0, 40);
  }
}

// Identifiers longer than 256 characters are matched in another way than shorter ones: both must
// agree with the expressions of the language.
TEST(Identifiers, AgreeWithTheExpressionsAtEveryLength) {
  const auto flags = std::regex::ECMAScript | std::regex::icase;
  const std::regex expressions[] = {
      std::regex(R"((COLONY|GROUP|HERD|MULTI?|UNK[NMF]?|WILD|P).*)", flags),
      std::regex(R"((COLONY|GROUP|HERD|MULTI?).+)", flags),
      std::regex(R"((COLONY|GROUP|HERD|MULTI?|UNK[NMF]?|WILD|P)\s*\d+)", flags),
      std::regex(R"((P|WILD)\s*\d+)", flags)};
  const std::string beginnings[] = {"COLONY", "gRoup", "HERD", "MULT",  "mulTI", "UNK", "unkn",
                                    "UNKM",   "uNKf",  "WILD", "wild ", "P",     "p",   "HER"};
  const std::string others("\n\r\t\v\f .iIa\0\xE9", 12);
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    std::string id = beginnings[random() % std::size(beginnings)];
    id.append(random() % 3, others[random() % others.size()]);
    const std::size_t length = i % 2 == 0 ? random() % 8 : 245 + random() % 20;
    while (id.size() < length) {
      id += static_cast<char>('0' + random() % 10);
    }
    if (random() % 4 == 0) {
      id += others[random() % others.size()];
    }
    std::string expected;
    for (int kind = 0; kind < 4; ++kind) {
      expected += std::regex_match(id, expressions[kind]) ? "pmlf"[kind] : '-';
    }
    ASSERT_EQ(kindsOf(id), expected) << testing::PrintToString(id);
  }
}

master_data animal(const char* id, day_number birth, day_number death) {
  master_data record;
  initializeMaster(record);
  record.stud_id = id;
  record.birth.date = birth;
  record.death.date = death;
  record.death.event = MOVE_TYPE::DEATH;
  return record;
}

TEST(Lives, EndOnTheDayOfDeathAndNeverWithoutOne) {
  struct {
    day_number birth, death, day;
    bool living;
  } const cases[] = {{100, 200, 99, false},         {100, 200, 100, true},
                     {100, 200, 199, true},         {100, 200, 200, false},
                     {100, 0, LAST_DAY, true},      {100, 0, 99, false},
                     {100, 100, 100, false},        {0, 1, 0, true},
                     {200, 100, 150, false},        {LAST_DAY, 0, LAST_DAY, true},
                     {0, LAST_DAY, LAST_DAY, false}};
  for (const auto& [birth, death, day, living] : cases) {
    SCOPED_TRACE(testing::Message() << birth << " to " << death << " on " << day);
    master_data record = animal("1", birth, death);
    EXPECT_EQ(isLiving(record, day), living);
    EXPECT_EQ(isPotentialBreeder(record, day), living);
    EXPECT_FALSE(isLivingBreeder(record, day));
    record.breeder = true;
    EXPECT_EQ(isLivingBreeder(record, day), living);
    EXPECT_FALSE(isPotentialBreeder(record, day));
  }
}

TEST(Lives, SpansThatWouldBeNegativeAreHuge) {
  struct {
    day_number birth, death;
    MOVE_TYPE end;
    double days;
    bool neonatal, still;
  } const cases[] = {{100, 130, MOVE_TYPE::DEATH, 30, true, false},
                     {100, 131, MOVE_TYPE::DEATH, 30, false, false},
                     {100, 100, MOVE_TYPE::SURPLUS, 0, true, true},
                     {100, 100, MOVE_TYPE::LOST_TO_FOLLOW_UP, 30, false, false},
                     {0, 0, MOVE_TYPE::DEATH, 30, false, false},
                     {100, 99, MOVE_TYPE::DEATH, 4294967294.0, false, false},
                     {100, 99, MOVE_TYPE::DEATH, 4294967295.0, true, false},
                     {100, 101, MOVE_TYPE::DEATH, NAN, false, false}};
  for (const auto& [birth, death, end, days, neonatal, still] : cases) {
    SCOPED_TRACE(testing::Message() << birth << " to " << death << " within " << days);
    master_data record = animal("1", birth, death);
    record.death.event = end;
    EXPECT_EQ(isNeonatalDeath(record, days), neonatal);
    EXPECT_EQ(isStillBirth(record), still);
  }
  const master_data mate = animal("2", 100, 0);
  EXPECT_TRUE(isSameLitter(mate, "UNKF", 95, 5));
  EXPECT_FALSE(isSameLitter(mate, "UNKF", 94, 5));
  EXPECT_FALSE(isSameLitter(mate, "UNKF", 101, 1e9)) << "born before the date";
  EXPECT_FALSE(isSameLitter(mate, "unkf", 100, 5)) << "dams are compared with their case";
}

TEST(Founders, HaveTwoWildParents) {
  // Answers on day 150: founder, living founder, potential founder, lost founder, wild litter.
  struct {
    const char *id, *sire, *dam;
    bool bred;
    day_number death;
    const char* answers;
  } const cases[] = {
      {"1", "WILD", "WILD", true, 0, "fl---"},     {"1", "WILD", "WILD", true, 140, "f----"},
      {"1", "WILD", "WILD", false, 0, "--p--"},    {"1", "WILD", "WILD", false, 140, "---o-"},
      {"P1", "WILD", "WILD", true, 0, "-----"},    {"P1", "WILD", "WILD", false, 0, "-----"},
      {"P1", "WILD", "WILD", false, 140, "---o-"}, {"1", "wild", "WILD", true, 0, "-----"},
      {"1", "WILD 3", "UNKF", true, 0, "----w"},   {"1", "UNKM", "WILD12", false, 0, "----w"},
      {"1", "wild 3", "WILDX", false, 0, "-----"}, {"1", "WIL", "", false, 0, "-----"}};
  for (const auto& [id, sire, dam, bred, death, answers] : cases) {
    master_data record = animal(id, 100, death);
    record.sire_id = sire;
    record.dam_id = dam;
    record.breeder = bred;
    const std::string found =
        std::string(isFounder(record) ? "f" : "-") + (isLivingFounder(record, 150) ? "l" : "-") +
        (isPotentialFounder(record, 150) ? "p" : "-") + (isLostFounder(record, 150) ? "o" : "-") +
        (isWildLitter(record) ? "w" : "-");
    EXPECT_EQ(found, answers) << id << " of " << sire << " and " << dam << " died " << death;
  }
}

TEST(Ranges, TreatMissingBoundsAsymmetrically) {
  struct {
    double value, low, high;
    bool inside;
  } const cases[] = {{NAN, 0, 1, true},        {0.5, NAN, NAN, true},  {0.5, NAN, 1, false},
                     {0.5, 0.2, NAN, true},    {0.1, 0.2, NAN, false}, {0.2, 0.2, 0.2, true},
                     {0.3, 0.1, 0.2, false},   {NAN, NAN, 1, true},    {0.2, 0.1, 0.2, true},
                     {INFINITY, 0, NAN, true}, {0.1, 0.3, 0.2, false}};
  for (const auto& [value, low, high, inside] : cases) {
    SCOPED_TRACE(testing::Message() << value << " in " << low << " to " << high);
    EXPECT_EQ(isInFcoef(value, low, high), inside);
    EXPECT_EQ(isInGeneration(value, low, high), inside);
  }
}

TEST(Ranges, OfDatesFollowTheirBrackets) {
  // Which of the days 4 to 8 lie between 5 and 7.
  struct {
    const char *brackets, *days;
  } const cases[] = {{"()", "..6.."}, {"(]", "..67."},  {"[)", ".56.."},
                     {"[]", ".567."}, {"{}", "....."},  {"", "....."},
                     {"[", "....."},  {"[]]", "....."}, {"](", "....."}};
  for (const auto& [brackets, days] : cases) {
    std::string found;
    for (day_number day = 4; day <= 8; ++day) {
      found += isInDates(day, {5, 7}, brackets) ? static_cast<char>('0' + day) : '.';
    }
    EXPECT_EQ(found, days) << brackets;
  }
}

TEST(Sexes, MatchListsAndPartners) {
  EXPECT_FALSE(isInSex(SEX::MALE, {}));
  EXPECT_TRUE(isInSex(SEX::FEMALE, {SEX::MALE, SEX::ALL}));
  EXPECT_TRUE(isInSex(SEX::FEMALE, {SEX::MALE, SEX::FEMALE}));
  EXPECT_FALSE(isInSex(SEX::ALL, {SEX::MALE}));
  const char* const partners[] = {".1...5", "0....5", ".....5", ".....5", ".....5", ".....5"};
  for (std::uint32_t a = 0; a < std::size(partners); ++a) {
    std::string found;
    for (std::uint32_t b = 0; b < 6; ++b) {
      found += isOppositeSex(SEX{a}, SEX{b}) ? static_cast<char>('0' + b) : '.';
    }
    EXPECT_EQ(found, partners[a]) << a;
  }
}

class ViewPredicates : public TemporaryHome {
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
  // Each letter is a move, 10 days after the one before; the first letter is the birth: i(n),
  // o(ut).
  struct {
    const char* places;
    day_number arrival, removal;
    bool moved_in_20_to_40;
  } const cases[] = {{"i", 0, 0, false},      {"io", 0, 10, false},   {"oi", 10, 0, false},
                     {"oio", 10, 20, false},  {"ooi", 20, 0, true},   {"iio", 10, 20, false},
                     {"ooooi", 40, 0, false}, {"oioi", 10, 20, true}, {"xxx", 0, 0, false},
                     {"ix", 0, 10, false}};
  for (const auto& [places, arrival, removal, moved] : cases) {
    SCOPED_TRACE(places);
    master_data record = animal("1", 1, 0);
    for (day_number i = 0; places[i] != '\0'; ++i) {
      move_data move;
      move.date = 10 * i;
      move.location = places[i] == 'i' ? in_view : places[i] == 'o' ? outside : 77;
      i == 0 ? void(record.birth = move) : record.moves.push_back(move);
    }
    EXPECT_EQ(arrivalDemeView(record), arrival);
    EXPECT_EQ(removalDemeView(record), removal);
    EXPECT_EQ(movedToDemeView(record, {20, 40}), moved);
  }
}

TEST_F(ViewPredicates, FilterByUserFieldsAndTaxa) {
  master_data record = animal("1", 1, 0);
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
  Animals.clearStudbook();
  master_data record = animal("wild 4", 100, 131);
  record.birth.location = in_view;
  record.sire_id = "WILD 12";
  record.dam_id = "UNK";
  Animals.addMaster(record);
  View.monitor_date = 130;
  std::filesystem::current_path(home);
  EXPECT_TRUE(TestFilters());
  EXPECT_EQ(takeOutput(), "Writing filter to: filter_test.csv\n");
  EXPECT_EQ(contentOf("filter_test.csv"),
            "ID|Unknown sex|Pseudo|Sire|Wild sire|Unkn sire|Multi sire|Same litter sire|"
            "Dam|Wild dam|Unkn dam|Multi dam|Same itter dam|"
            "Breeder|Living breeder|Potential breeder|"
            "Founder|Potential founder|Pseudo founder|Lost founder|Wild litter|"
            "Neonatal death|Stillbirth|Alive|Deme view|Taxon view|User view|Print|Selected?\n"
            "wild 4|true|true|WILD 12|false|false|false|true|UNK|false|true|false|false|"
            "false|false|true|false|false|true|false|true|"
            "false|false|true|true|true|true|true|true\n");
}

}  // namespace
}  // namespace spx
