#include "console/studbook/load_studbook.h"

#include <cmath>

#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"
#include "spx/core/studbook.h"
#include "spx/core/user_fields.h"

#include "console/base/failure.h"
#include "console/studbook/import_studbook.h"
#include "console/studbook/open_tables.h"
#include "console/tables/event_cells.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

std::string dayText(qs_lib::day_number day) {
  return qs_lib::julianToISO(qs_lib::dayToMs(day));
}

/// Studbooks from tables, and from a studbook file that they were imported into.
class LoaderTest : public ConsoleTest, public testing::WithParamInterface<bool> {
 protected:
  static const master_data& animal(const std::string& id) { return Animals.records.at(Animals.findMaster(id)); }

  static std::string placeOf(const move_data& event) {
    return MetaPop.getMemberName(event.location) + "#" + std::to_string(event.number);
  }

  /// Loads tables with these texts; an empty text means that the table is not given. @return the faults
  std::string load(const std::string& animals, const std::string& events = "", const std::string& locations = "",
                   const std::string& programs = "") {
    const auto write = [&](const char* name, const std::string& text) { return text.empty() ? "" : table(name, text); };
    try {
      const studbook_files files = {
          write("a.csv", animals), write("e.csv", events), write("l.csv", locations), write("p.csv", programs), {}};
      notes = GetParam() ? loadFile(files) : loadStudbook(files);
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "";
  }

  loading_notes notes;

 private:
  loading_notes loadFile(const studbook_files& files) {
    NewStudbook book(at("a.studbook"));
    loadStudbook(book.copying(openTables(files)));
    book.finish({IMPORT_CHANGE, "import", "", ""});
    return loadStudbook(openTables({at("a.studbook"), "", "", "", {}}));
  }
};

INSTANTIATE_TEST_SUITE_P(Sources, LoaderTest, testing::Bool(),
                         [](const auto& source) { return source.param ? "StudbookFile" : "Tables"; });

TEST_P(LoaderTest, FillsARecordFromEveryField) {
  EXPECT_EQ(load("id,father,Mother,gender,YOB,birth_range,dod,death_accuracy,end_event,birth_type,"
                 "rearing,subspecies,f,g_cites,g_average,chip,\n"
                 "007,12,0,M,1976,,1990-03,by week,lost to follow-up,wild,hand,borea,0.125,2,3.5,"
                 "0815,x\n"
                 "12,WILD,wild,1,1960-05-04,400,,,,captive,,,,,,,\n"),
            "");
  const master_data& first = animal("007");
  EXPECT_EQ(first.sire_id, "12");
  EXPECT_EQ(first.dam_id, "UNKF");
  EXPECT_EQ(first.sex, SEX::MALE);
  EXPECT_EQ(dayText(first.birth.date), "1976-01-01");
  EXPECT_EQ(first.birth.accuracy, DATE_ACCURACY::BY_YEAR);
  EXPECT_EQ(dayText(first.death.date), "1990-03-01");
  EXPECT_EQ(first.death.accuracy, DATE_ACCURACY::BY_WEEK);
  EXPECT_EQ(first.death.event, MOVE_TYPE::LOST_TO_FOLLOW_UP);
  EXPECT_EQ(first.birth_type, BIRTH_TYPE::WILD_BORN);
  EXPECT_EQ(first.rearing, REARING::HAND);
  EXPECT_EQ(Subspecies.getName(first.taxon), "borea");
  EXPECT_EQ(first.fcoef, 0.125);
  EXPECT_EQ(first.generation[G_CITES], 2);
  EXPECT_TRUE(std::isnan(first.generation[G_MATERNAL]));
  EXPECT_EQ(first.generation[G_AVERAGE], 3.5);
  EXPECT_EQ(first.user_data, (std::vector<std::string>{"0815", "x"}));
  EXPECT_EQ(placeOf(first.birth) + placeOf(first.death), "unknown#1unknown#1");
  const master_data& second = animal("12");
  EXPECT_EQ(second.sire_id + second.dam_id, "WILDWILD");
  EXPECT_EQ(second.birth.accuracy, DATE_ACCURACY::DATE_RANGE);
  EXPECT_EQ(second.death.event, MOVE_TYPE::NO_EVENT);
  EXPECT_TRUE(second.breeder);
  ASSERT_EQ(user_field_list.size(), 2U);
  EXPECT_EQ(user_field_list[0].type, qs_lib::FIELD_TYPE::TEXT);
  EXPECT_EQ(user_field_list[1].name, "column 17");
  EXPECT_EQ(Book.name + " " + Book.format, GetParam() ? "a SQLite" : "a CSV");
  EXPECT_EQ(dayText(Book.first_date) + dayText(Book.update_date), "1960-05-041990-03-01");
  EXPECT_EQ(Animals.pedigree.size(), Animals.records.size());
}

TEST_P(LoaderTest, MovesFollowTheTableAndEndsFollowTheMoves) {
  EXPECT_EQ(load("id,location,death_date\n1,1.1,2001\n2,Far,\n3,,1999-01-01\n",
                 "id,date,event,location,accuracy,range\n"
                 "1,2000-05-05,arrival,2.1,,\n"
                 "1,1999,social in,,by month,\n"
                 "2,1998-01-01,release d,1.1,,\n",
                 "level,id,name\npen,2.1,Far\npen,1.1,Near\nzoo,1,Home\nzoo,2,Away\n"),
            at("e.csv") + ":4: column \"event\", animal \"2\": \"release d\" is not a valid " + KIND_OF_EVENT +
                "\n"
                "1 fault; nothing was loaded");
  EXPECT_TRUE(Animals.records.empty());
  EXPECT_TRUE(MetaPop.levels().empty());
  EXPECT_EQ(load("id,location,death_date\n1,1.1,2001\n2,Far,\n3,,1999-01-01\n",
                 "id,date,event,location,accuracy,range\n"
                 "1,2000-05-05,arrival,2.1,,\n"
                 "1,1999,social in,,by month,\n",
                 "level,id,name\npen,2.1,Far\npen,1.1,Near\nzoo,1,Home\nzoo,2,Away\n", "Programme\nA\nB\nA\n"),
            "");
  const master_data& first = animal("1");
  ASSERT_EQ(first.moves.size(), 2U);
  EXPECT_EQ(first.moves[0].event, MOVE_TYPE::ARRIVAL);
  EXPECT_EQ(first.moves[1].accuracy, DATE_ACCURACY::BY_MONTH);
  EXPECT_EQ(placeOf(first.birth) + placeOf(first.moves[1]) + placeOf(first.death), "Near#2Far#1Far#1");
  EXPECT_EQ(placeOf(animal("2").birth), "Far#1");
  EXPECT_EQ(placeOf(animal("3").death), "unknown#5");
  EXPECT_EQ(MetaPop.levels()[0].name + MetaPop.levels()[1].name, "zoopen");
  EXPECT_EQ(MetaPop.getNumberOfMembers(0), 3U);
  EXPECT_EQ(Management.programs(), (std::vector<std::string>{"A", "B"}));
}

TEST_P(LoaderTest, LocationsAreRegisteredWhereTheyOccur) {
  std::string many = "id,birth_location\n";
  for (int number = 1; number <= 300; ++number) {
    many += std::to_string(number) + ",Zoo " + std::to_string(number) + "\n";
  }
  EXPECT_EQ(load(many + "301,1034\n302,NA\n"), "");
  EXPECT_EQ(placeOf(animal("300").birth), "Zoo 300#300");
  EXPECT_EQ(placeOf(animal("301").birth) + placeOf(animal("302").birth), "1034#301unknown#302");
  EXPECT_FALSE(isSubMember(animal("302").birth.location, animal("300").birth.location));
  EXPECT_EQ(load("id,location\n1,3.1.12\n2,3.2\n"), "");
  EXPECT_TRUE(MetaPop.memberExists("3"));
  EXPECT_TRUE(MetaPop.memberExists("3.1"));
  EXPECT_EQ(placeOf(animal("1").birth) + placeOf(animal("2").birth), "3.1.12#33.2#4");
}

TEST_P(LoaderTest, ParentsBecomeResolvable) {
  EXPECT_EQ(load("id,sire,dam,sex\n"
                 "1,WILD,WILD,m\n2,WILD,WILD,f\n3,WILD,2,m\n4,WILD,2,m\n5,WILD,,m\n"
                 "6,99,2,m\n7,99,98,m\nPedro,1,2,m\n8,Pedro,MULT3,m\n"),
            "");
  EXPECT_EQ(animal("3").sire_id + animal("4").sire_id, "P2P2");
  EXPECT_EQ(animal("5").sire_id + animal("5").dam_id, "WILDUNKF");
  EXPECT_EQ(animal("P99").sex, SEX::MALE);
  // Nine rows, five pseudo parents, and P2, P99, P98, PMULT3; the memory was reserved at once.
  EXPECT_EQ(Animals.records.size(), 18U);
  EXPECT_EQ(takeOutput(), "");
  const std::string errors = takeErrors();
  EXPECT_NE(errors.find("1 animal is treated as a placeholder because of its ID: Pedro\n"), std::string::npos)
      << errors;
  EXPECT_NE(errors.find("2 parents have no record (3 references): 99, 98\n"), std::string::npos) << errors;
}

TEST_P(LoaderTest, RowsAreFoundAgain) {
  EXPECT_EQ(load("id,sire,dam,location\n\n1,WILD,2,Zoo\nPedro,,,Park\n\n\"2\n\",,,\n3,WILD,1,Zoo\n"), "");
  std::string places;
  for (position record = 0; record <= Animals.records.size(); ++record) {
    places += std::to_string(notes.lineOf(record)) + " ";
  }
  EXPECT_EQ(places, GetParam() ? "0 0 0 0 0 1 2 3 4 0 0 0 " : "0 0 0 0 0 3 4 6 8 0 0 0 ");
  EXPECT_EQ(notes.placeOf(6), at(GetParam() ? "a.studbook (animals):2" : "a.csv:4"));
  EXPECT_EQ(notes.placeOf(0), "");
  EXPECT_EQ(notes.placeholders, std::vector<position>{6});
  EXPECT_EQ(notes.new_locations, (std::vector<std::string>{"Zoo", "Park"}));
}

struct fault_case {
  const char* animals;
  const char* events;
  const char* locations;
  const char* fault;  ///< the first line, without the directory
};

TEST_P(LoaderTest, FaultsNameThePlace) {
  const fault_case cases[] = {
      {"id,sex\n1,m\n2,x\n", "", "",
       "a.csv:3: column \"sex\", animal \"2\": \"x\" is not a valid sex (male, female, hermaphrodite, "
       "abnormal, "
       "unknown; m, f, h, u; 1, 2, 0)"},
      {"id,sex\n,m\n", "", "", "a.csv:2: column \"id\": the ID is missing"},
      {"id,sex\n0,m\n", "", "",
       "a.csv:2: column \"id\", animal \"0\": \"0\" means an unknown parent and cannot be an ID"},
      {"id,sex\n1\n", "", "", "a.csv:2: animal \"1\": the row has 1 cells, the header line has 2"},
      {"name\nx\n", "", "",
       "a.csv:1: there is no column \"id\"; the columns are \"name\". Choose one of them, for example --map "
       "id=\"TITLE\""},
      {"id,YOB\n\"1\n\",1\n2,1976-31\n", "", "",
       "a.csv:2: column \"YOB\", animal \"1\\n\": \"1\" is not a date (write YYYY-MM-DD, YYYY-MM or YYYY)"},
      {"id,death_event\n1,death\n", "", "", "a.csv:2: column \"death_event\", animal \"1\": \"death\" needs a date"},
      {"id,f\n1,1e999\n", "", "", "a.csv:2: column \"f\", animal \"1\": \"1e999\" is not a valid number"},
      {"id,location\n1,3.300\n", "", "",
       "a.csv:2: column \"location\", animal \"1\": \"3.300\" is not a location identifier (numbers from "
       "1 "
       "to 255, joined by dots)"},
      {"id,location\n1,3.1\n", "", "id,name\n3,x\n",
       "a.csv:2: column \"location\", animal \"1\": the location \"3.1\" is not in the locations "
       "table"},
      {"id,location\n1,Zoo\n2,1\n", "", "",
       "a.csv:3: column \"location\", animal \"2\": \"1\" is an identifier, but other locations are given by name: "
       "give a locations table"},
      {"id,location\n1,x\n", "", "id,name\n1,x\n2,x\n",
       "a.csv:2: column \"location\", animal \"1\": \"x\" is the name of several locations: give "
       "the identifier"},
      {"id\n1\n", "", "level,id,name,lat\nzoo,1,x,91\n",
       "l.csv:2: column \"lat\", location \"1\": \"91\" is beyond 90 degrees"},
      {"id\n1\n", "", "level,id,name\nzoo,1,x\npen,2,y\n",
       "l.csv:3: column \"level\", location \"2\": identifiers of this depth belong to the level "
       "\"zoo\", not \"pen\""},
      {"id\n1\n", "", "id,name\n1,x\n001,y\n",
       "l.csv:3: column \"id\", location \"001\": the location is listed twice"},
      {"id\n1\n", "id,date,event\n2,2000,arrival\n", "",
       "e.csv:2: column \"id\", animal \"2\": the animal is not in the table of animals"},
      {"id\n1\n", "id,date,event\n1,,arrival\n", "", "e.csv:2: column \"date\", animal \"1\": the date is missing"},
      {"id\n1\n", "id,date,event\n1,2000,Death\n", "",
       "e.csv:2: column \"event\", animal \"1\": \"Death\" belongs in the table of animals"},
  };
  for (const auto& [animals, events, locations, fault] : cases) {
    SCOPED_TRACE(fault);
    const std::string text = load(animals, events, locations);
    EXPECT_EQ(text.substr(0, text.find('\n')), home + "/" + fault);
    EXPECT_TRUE(Animals.records.empty());
    EXPECT_TRUE(MetaPop.levels().empty());
    EXPECT_TRUE(user_field_list.empty());
  }
}

}  // namespace
}  // namespace spx::console
