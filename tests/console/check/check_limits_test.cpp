// The limits of the rules: places, life history, names, and records that no keeper would write.
#include <functional>
#include <limits>
#include <random>

#include "tests/console/check/check_fixture.h"

namespace spx::console {
namespace {

constexpr char ZOOS[] = "zoo,1,North\nzoo,2,South\n";

TEST_F(CheckTest, ParentsAreApartOnlyWhereTheRecordsSaySo) {
  const std::string titles = "id,sire,dam,sex,birth_date,birth_location,death_date,death_event\n";
  const std::string family = titles + "1,,,m,1980,1,,\n2,,,f,1980,2,,\n3,1,2,f,2000-05-01,2,,\n";
  const std::string moved = "9,1990-01-01,arrival,1\n";
  const std::string other = "9,,,f,1980,2,,\n";
  const struct {
    const char* why;
    std::string animals;
    std::string events;
    const char* found;
    std::string locations = ZOOS;
  } cases[] = {
      {"no event records a move", family, "", ""},
      {"both stayed where they were born", family + other, moved, "parents-apart "},
      {"he came in time", family + other, moved + "1,2000-01-01,arrival,2\n", ""},
      {"he came too late", family + other, moved + "1,2000-06-01,arrival,2\n", "parents-apart "},
      {"he may have come in time", family + other, moved + "1,2000,arrival,2\n", ""},
      {"he left long before", family + other, moved + "1,1990-01-01,arrival,2\n1,1995-01-01,arrival,1\n",
       "parents-apart "},
      {"nobody knows where he was after his release", family + other, moved + "1,1990-01-01,released,1\n", ""},
      {"nobody knows where he was after his loss",
       titles + "1,,,m,1980,1,1995,lost-to-follow-up\n2,,,f,1980,2,,\n3,1,2,f,2000-05-01,2,,\n" + other, moved, ""},
      {"his place is not known", titles + "1,,,m,1980,,,\n2,,,f,1980,2,,\n3,1,2,f,2000-05-01,2,,\n" + other, moved, ""},
      {"the dam was not where she gave birth", titles + "2,,,f,1980,2,,\n3,,2,f,2000-05-01,1,,\n" + other, moved,
       "dam-in-two-places "},
      {"the second level is the institution",
       titles + "1,,,m,1980,1.1.1,,\n2,,,f,1980,1.1.2,,\n3,1,2,f,2000-05-01,1.1.1,,\n9,,,f,1980,1.2,,\n",
       "9,1990-01-01,arrival,1.1\n", "",
       "region,1,West\nplace,1.1,North\nplace,1.2,South\nhouse,1.1.1,A\nhouse,1.1.2,B\n"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.why);
    EXPECT_EQ(codesOf(findingsIn(one.animals, one.events, one.locations)), one.found);
  }
}

TEST_F(CheckTest, TheLifeHistoryDecidesWhatIsPossible) {
  const std::string parents =
      "id,sire,dam,sex,birth_date,death_date\n1,,,m,1980-01-01,1999-12-01\n"
      "2,,,f,1980-01-01,2000-04-01\n";
  const std::string late = parents + "3,1,2,m,2000-05-01,\n";
  const std::string close = parents + "3,1,2,m,1995-05-01,\n4,1,2,f,1995-09-01,\n";
  const std::string twins = parents + "3,1,2,m,1995-05-01,\n4,1,2,m,1995-05-01,\n5,1,2,m,1995-05-01,\n";
  const struct {
    const char* why;
    std::string animals;
    std::function<void()> set;
    const char* found;
  } cases[] = {
      {"two years, and the dam alive", late, [] {}, "born-after-dam-died "},
      {"a short gestation", late, [] { LifeHistory.setGestation(30); },
       "born-after-dam-died conceived-after-sire-died "},
      {"an egg hatches later", late,
       [] {
         LifeHistory.setReproductiveSystem(REPRODUCTIVE_SYSTEM::OVIPAROUS);
         LifeHistory.setGestation(200);
       },
       ""},
      {"no interval is known", close, [] {}, ""},
      {"the interval", close,
       [] {
         LifeHistory.setBirthInterval({200, 900});
       },
       "litter-interval "},
      {"a shorter interval", close,
       [] {
         LifeHistory.setBirthInterval({100, 900});
       },
       ""},
      {"one long litter", close,
       [] {
         LifeHistory.setBirthInterval({200, 900});
         LifeHistory.setBirthDateRange(130);
       },
       ""},
      {"unset ages are no limits", close,
       [] {
         LifeHistory.setReproductiveAge(SEX::FEMALE, {36500, 0});
       },
       ""},
      {"the dam was too old", close,
       [] {
         LifeHistory.setReproductiveAge(SEX::FEMALE, {300, 4000});
       },
       "parent-too-old parent-too-old "},
      {"a pair of triplets is enough", twins, [] { LifeHistory.setMaxLitterSize(1); },
       "near-duplicate near-duplicate "},
      {"triplets are usual", twins, [] { LifeHistory.setMaxLitterSize(3); }, ""},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.why);
    LifeHistory.initialize();
    one.set();
    EXPECT_EQ(codesOf(findingsIn(one.animals)), one.found);
  }
}

TEST_F(CheckTest, LocationsAreAlikeByWordsAndOneLetter) {
  const struct {
    const char* first;
    const char* second;
    bool alike;
  } cases[] = {{"Dresden Zoo", "dresden-zoo", true},
               {"Dresden Zoo", "Zoo Dresden", true},
               {"Dresden", "Dresdn", true},
               {"Dresden", "Dresdener", false},
               {"Dresden", "Drseden", false},
               {"Eastern", "Western", false},
               {"Building 12", "Building 13", false},
               {"Paris", "Parts", false},
               {"Leipzig Zoo", "Leipzig", false},
               {"Kronberg East", "Kronburg East", true},
               {"Kronberg East", "Kronberg West", false}};
  for (const auto& [first, second, alike] : cases) {
    const std::string animals = std::string("id,birth_location\n1,") + first + "\n2," + second + "\n";
    EXPECT_EQ(codesOf(findingsIn(animals)), alike ? "similar-locations " : "") << first << ", " << second;
  }
  EXPECT_EQ(codesOf(findingsIn("id\n1\n", "",
                               "zoo,1,North\nzoo,2,South\nhouse,1.1,Aviary\nhouse,2.1,Aviary\nhouse,2.2,aviary\n")),
            "similar-locations ")
      << "only places of one place are compared";
}

TEST_F(CheckTest, EventsAreComparedAsExactlyAsTheyAreKnown) {
  const std::string titles = "id,sex,birth_date,birth_location,death_date,death_event\n";
  const struct {
    const char* events;
    const char* found;
  } cases[] = {
      {"1,2000,arrival,1\n", ""},
      {"1,2000-04,arrival,1\n", "event-before-birth "},
      {"1,2010,arrival,1\n", ""},
      {"1,2010-08-01,social in,1\n", "event-after-death "},
      {"1,2090,arrival,1\n", "future-date event-after-death "},
      {"1,2001,from wild,1\n1,2001-05-05,from wild,1\n", ""},
      {"1,2001,from wild,1\n1,2003,population in,2\n", "overlapping-stays "},
      {"1,2001,from wild,1\n1,2002,population out,1\n1,2003,population in,2\n", ""},
      {"1,2001-05-05,arrival,1\n1,2001-05-05,arrival,1\n", ""},
  };
  for (const auto& [events, found] : cases) {
    EXPECT_EQ(codesOf(findingsIn(titles + "1,m,2000-05-01,1,2010-07,death\n", events, ZOOS)), found) << events;
  }
}

// Values as in damaged files, and arbitrary parents: behaviour must be defined, and findings reproducible.
TEST_F(CheckTest, AnyRecordsCanBeChecked) {
  findingsIn("id,birth_location\n1,North\n2,South\n");
  std::mt19937 random(7);
  const std::uint32_t days[] = {0, 1, 2378497, 2451545, 2461042, std::numeric_limits<std::uint32_t>::max()};
  const std::uint64_t ranges[] = {0, 1, 400, std::numeric_limits<std::uint64_t>::max()};
  const packed_deme places[] = {0, Animals.records.back().birth.location, -1, std::numeric_limits<packed_deme>::min()};
  const auto event_of = [&] {
    move_data event;
    event.date = days[random() % std::size(days)];
    event.accuracy = static_cast<DATE_ACCURACY>(random() % 9);
    event.range = ranges[random() % std::size(ranges)];
    event.location = places[random() % std::size(places)];
    event.event = static_cast<MOVE_TYPE>(random() % 17);
    return event;
  };
  std::vector<master_data> records(400);
  for (master_data& animal : records) {
    const auto id = [&] { return std::string(random() % 3, ' ') + std::to_string(random() % 200); };
    animal.stud_id = id();
    animal.sire_id = id();
    animal.dam_id = id();
    animal.sex = static_cast<SEX>(random() % 7);
    animal.birth = event_of();
    animal.death = event_of();
    animal.moves = {event_of(), event_of(), event_of()};
  }
  const std::vector<finding> findings = findingsOf(records);
  EXPECT_FALSE(findings.empty());
  EXPECT_TRUE(addedFindings(findings, findingsOf(records)).empty());
  for (const finding& one : findings) {
    EXPECT_FALSE(one.message.empty());
  }
  EXPECT_TRUE(findingsOf({}).empty());
}

TEST_F(CheckTest, TextIsGroupedByRules) {
  const std::string file = table("a.csv",
                                 "id,sire,dam,sex,birth_date\n1,,,m,1980\n2,,,f,1980\n3,2,,m,2000\n"
                                 "4,2,,m,2000\n\"a\x1b[1mb\",5,,m,1970\n5,1l,2,m,\n");
  EXPECT_EQ(run({"--studbook", file, "check"}), 3);
  EXPECT_EQ(takeOutput(),
            "Parents of the wrong sex: 1 (error, parent-sex)\n"
            "  a.csv:3: 2 is female but is the sire of 3 and 4\n"
            "    -> Correct the sex of 2, or the sire of 3 and 4.\n"
            "\n"
            "Parents without a record: 1 (warning, missing-parent)\n"
            "  a.csv:7: 1l has no record, but is the sire of 5\n"
            "    -> Did you mean 1?\n"
            "\n"
            "Births that cannot be compared: 1 (note, undecided)\n"
            "  2 births cannot be compared with that of a parent: dates are missing or too\n"
            "    rough\n"
            "\n"
            "Found 1 error, 1 warning, 1 note in 6 animals.\n");
}

}  // namespace
}  // namespace spx::console
