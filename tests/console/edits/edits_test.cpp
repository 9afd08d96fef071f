#include <cstdlib>
#include <filesystem>
#include <functional>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include "console/studbook/write_tables.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class EditsTest : public ConsoleTest {
 protected:
  /// A small family: 1 and 2 are the parents of 3 and of the first 4; the second 4 is another animal.
  EditsTest() {
    std::filesystem::create_directory(at("in"));
    writeContent(at("in/animals.csv"),
                 "id,sire,dam,sex,birth_date,birth_location,Name\n1,,,m,1990,A,Ada\n2,,,f,1991,A,\n3,1,2,f,1995,B,\n"
                 "4,1,2,m,1996,B,\n4,,,f,1997,B,Bo\n5,4,,u,2000,B,\n");
    writeContent(at("in/events.csv"), "id,date,event,location\n1,1992,arrival,B\n1,1993,arrival,A\n4,1998,arrival,A\n");
    writeContent(at("in/locations.csv"), "level,id,name\nregion,1,West\nzoo,1.1,A\nzoo,1.2,B\n");
    import(file, at("in"));
  }

  void import(const std::string& to, const std::string& from) {
    ASSERT_EQ(run({"import", from, "--studbook", to}), 0) << takeErrors();
  }

  int edit(std::vector<std::string> words) {
    words.insert(words.begin(), {"--studbook", file});
    takeOutput();
    takeErrors();
    return run(words);
  }

  /// All tables of a studbook file.
  std::string tables(const std::string& from) {
    std::filesystem::create_directory(at("out"));
    writeTables(from, at("out"));
    std::string text;
    for (const std::string& name : tableFiles(from)) {
      text += contentOf(at("out/" + name));
    }
    return text;
  }
  std::string tables() { return tables(file); }

  std::string query(const std::string& text) {
    SQLite::Database database(file, SQLite::OPEN_READWRITE);
    std::string rows;
    SQLite::Statement statement(database, text);
    while (statement.executeStep()) {
      for (int column = 0; column < statement.getColumnCount(); ++column) {
        rows += (column == 0 ? "" : "|") + statement.getColumn(column).getString();
      }
      rows += "\n";
    }
    return rows;
  }

  const std::string file = at("t.studbook");
};

struct edit_case {
  std::vector<std::string> words;
  const char* shows;  ///< on standard output
};

const edit_case EDITS[] = {
    {{"animal", "set", "3", "Name=Cy", "rearing=hand"}, "3: Name (empty) -> Cy\n3: rearing (empty) -> hand\n"},
    {{"animal", "set", "1", "2", "origin=wild"}, "1: origin (empty) -> wild\n2: origin (empty) -> wild\n"},
    {{"animal", "set", "--where", "sex=female", "--where", "sire=1", "Name=x"}, "3: Name (empty) -> x\n"},
    {{"animal", "set", "4#2", "Name="}, "4: Name Bo -> (empty)\n"},
    {{"animal", "set", "3", "Colour=red", "--new"}, "new field Colour\n3: Colour (empty) -> red\n"},
    {{"animal", "add", "6", "dam=3", "dob=2001"}, "6: new animal: dam 3, birth_date 2001\n"},
    {{"animal", "remove", "5"}, "5: removed animal: sire 4, sex u, birth_date 2000, birth_location B\n"},
    {{"animal", "remove", "1", "--anyway"}, "1: removed event: date 1992, event arrival, location B\n1: removed event"},
    {{"animal", "rename", "1", "01"}, "01: id 1 -> 01\n3: sire 1 -> 01\n4: sire 1 -> 01\n"},
    {{"animal", "rename", "4#1", "40"}, "40: id 4 -> 40\n5: sire 4 -> 40\n"},
    {{"animal", "rename", "4#2", "40"}, "40: id 4 -> 40\n"},
    {{"animal", "merge", "4#1", "4#2", "sex=m", "birth_date=1996"}, "4: Name (empty) -> Bo\n4: removed animal"},
    {{"animal", "merge", "3", "2", "--anyway"},
     "2: removed animal: sex f, birth_date 1991, birth_location A\n3: dam 2 -> 3\n4: dam 2 -> 3\n"},
    {{"event", "add", "2", "3", "date=1999", "event=arrival", "location=A", "--anyway"},
     "2: new event: date 1999, event arrival, location A\n3: new event"},
    {{"event", "set", "1", "--number", "2", "date=1994"}, "1: event 1994 arrival A: date 1993 -> 1994\n"},
    {{"event", "set", "--where", "location=A", "location=B"},
     "1: event 1993 arrival B: location A -> B\n4: event 1998"},
    {{"event", "remove", "1", "--where", "date=1992"}, "1: removed event: date 1992, event arrival, location B\n"},
    {{"location", "add", "C", "--in", "West"}, "C: new location: level zoo, id 1.3, name C\n"},
    {{"location", "set", "A", "name=AA"},
     "1: birth_location A -> AA\n2: birth_location A -> AA\n1: event 1993 arrival AA: location A -> AA\n"},
    {{"location", "merge", "A", "B"}, "3: birth_location B -> A\n4: birth_location B -> A\n"},
    {{"field", "add", "note", "--of", "events"}, "new field note\n"},
    {{"field", "rename", "name", "House name"}, "field Name -> House name\n"},
    {{"field", "remove", "Name"}, "removed field Name with 2 values\n"},
    {{"birth", "6", "7", "--sire", "1", "--dam", "2", "--on", "1999-05", "--at", "A"},
     "6: new animal: sire 1, dam 2, birth_date 1999-05, birth_location A, origin captive-born\n7: new animal"},
    {{"death", "1", "2", "--on", "2001-01-31"},
     "1: death_date (empty) -> 2001-01-31\n1: death_event (empty) -> death\n"},
    {{"transfer", "3", "--to", "A", "--on", "1998"}, "3: new event: date 1998, event arrival, location A\n"},
    {{"birth", "6", "--sire", "77", "--dam", "wild", "--on", "1999", "--new"}, "6: new animal: sire 77, dam wild,"},
    {{"animal", "set", "5", "sire=UNK", "dam=GROUP A"}, "5: sire 4 -> UNK\n5: dam (empty) -> GROUP A\n"},
    {{"transfer", "1", "--to", "A", "--on", "1992-06"}, "1: new event: date 1992-06, event arrival, location A\n"},
    {{"transfer", "3", "--to", "B", "--on", "1998", "--anyway"},
     "3: new event: date 1998, event arrival, location B\n"},
    {{"loss", "3", "--on", "1999"}, "3: death_event (empty) -> lost-to-follow-up\n"},
};

// Each command shows what it did; undo restores the tables byte for byte and redo repeats the
// change; a dry run does not change the file.
TEST_F(EditsTest, EveryChangeIsShownUndoneAndRedone) {
  for (const edit_case& each : EDITS) {
    const auto& [words, shows] = each;
    SCOPED_TRACE(testing::PrintToString(words));
    const std::string before = tables();
    const std::string bytes = contentOf(file);
    std::vector<std::string> trial = words;
    trial.push_back("--dry-run");
    EXPECT_EQ(edit(trial), 0);
    const std::string planned = takeOutput();
    EXPECT_EQ(contentOf(file), bytes);
    ASSERT_EQ(edit(words), 0) << takeErrors();
    const std::string shown = takeOutput();
    EXPECT_EQ(shown, planned);
    EXPECT_NE(shown.find(shows), std::string::npos) << shown;
    const std::string after = tables();
    EXPECT_NE(after, before);
    ASSERT_EQ(edit({"undo"}), 0) << takeErrors();
    EXPECT_EQ(tables(), before);
    if (&each == EDITS || words[0] == "field" || words[1] == "merge") {
      ASSERT_EQ(edit({"redo"}), 0) << takeErrors();
      EXPECT_EQ(tables(), after);
      ASSERT_EQ(edit({"undo"}), 0) << takeErrors();
      EXPECT_EQ(tables(), before);
    }
  }
}

TEST_F(EditsTest, RefusesWithAReasonAndChangesNothing) {
  ASSERT_EQ(edit({"death", "2", "--on", "2005"}), 0);
  const struct {
    std::vector<std::string> words;
    int code;
    const char* says;
  } cases[] = {
      {{"animal", "set", "sex=m"}, 2, "no animal is named"},
      {{"death", "1", "--on", "1991"}, 1, "more than a gestation period earlier"},
      {{"animal", "set", "3"}, 2, "give FIELD=VALUE"},
      {{"animal", "set", "4", "sex=m"}, 1, "\n  4#2  sex f, born 1997"},
      {{"animal", "set", "4#3", "sex=m"}, 1, "there is no animal \"4#3\""},
      {{"animal", "set", "--where", "Name=Zed", "sex=m"}, 1, "no animals match --where Name=Zed"},
      {{"animal", "remove", "2"}, 1, "2 is a parent of 2 animals (3, 4)"},
      {{"animal", "rename", "1", "4"}, 1, "already an animal"},
      {{"animal", "rename", "1", "unknown"}, 2, "cannot be an ID"},
      {{"animal", "merge", "4#1", "4#2"}, 1, "sex: m and f\n  birth_date: 1996 and 1997"},
      {{"animal", "merge", "1", "1"}, 2, "the same animal"},
      {{"event", "set", "1", "date=1"}, 1, "\n  2  1993 arrival A"},
      {{"event", "set", "1", "--number", "3", "date=1"}, 1, "1 has 2 events:"},
      {{"event", "remove"}, 2, "no event is named"},
      {{"event", "add", "1", "date=1999", "event=arival"}, 2, "event: \"arival\" is not a kind of event"},
      {{"animal", "set", "3", "sire=11"}, 1, "there is no animal \"11\" to be the sire; did you mean \"1\"?"},
      {{"birth", "6", "--dam", "22", "--on", "1999"}, 1, "no animal \"22\" to be the dam"},
      {{"birth", "6", "--on", "02/03/1999"}, 2, "birth_date: \"02/03/1999\" can be read day first or month first"},
      {{"death", "3", "--on", "1999-13-01"}, 2, "death_date: \"1999-13-01\""},
      {{"animal", "set", "3", "sex=x"}, 2, "sex: \"x\" is not a sex (male, female"},
      {{"transfer", "3", "--to", "B", "--on", "1998"}, 1, "3 is at B already, since 1995; nothing was changed"},
      {{"transfer", "1", "--to", "1.2", "--on", "1992-06"}, 1, "1 is at 1.2 already, since 1992"},
      {{"event", "add", "1", "date=1995", "event=arrival", "location=A"}, 1, "1 is at A already, since 1993"},
      {{"location", "add", "C"}, 2, "--in LOCATION (West"},
      {{"location", "add", "A", "--in", "1"}, 1, "there is already a location 1.1"},
      {{"location", "merge", "A", "West"}, 1, "1 contains 2 locations"},
      {{"location", "set", "Wes", "name=E"}, 1, "did you mean \"West\"?"},
      {{"field", "remove", "sire"}, 2, "is a built-in field"},
      {{"field", "remove", "Nam"}, 2, "did you mean \"Name\"?"},
      {{"field", "add", "father"}, 2, "is a built-in field"},
      {{"death", "2", "--on", "2006"}, 1, "already has an end: death on 2005"},
      {{"animal", "set", "3", "sire=3"}, 1, "3 is its own sire"},
      {{"animal", "set", "1", "sire=3"}, 1, "cannot be true"},
      {{"animal", "set", "3", "sire=2"}, 1, "cannot be true"},
      {{"death", "3", "--on", "1994"}, 1, "cannot be true"},
      {{"transfer", "3", "--to", "A", "--on", "1994-05-05"}, 1, "cannot be true"},
      {{"transfer", "3", "--to", "\xC3\x84", "--on", "1999"}, 2, "; did you mean \"A\"?"},
      {{"transfer", "3", "--to", "AB", "--on", "1999"}, 2, "there is no location \"AB\"; did you mean"},
      {{"undo", "1"}, 1, "made the studbook"},
      {{"undo", "77"}, 1, "there is no change 77"},
      {{"redo"}, 1, "nothing to redo"},
      {{"restore", "--at", "1999-01-01", "-o", at("r.studbook")}, 1, "was not created until after"},
      {{"restore", "--at", "May", "-o", at("r.studbook")}, 2, "is not a time"},
  };
  const std::string bytes = contentOf(file);
  for (const auto& [words, code, says] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    EXPECT_EQ(edit(words), code);
    EXPECT_NE(takeErrors().find(says), std::string::npos) << says;
    EXPECT_EQ(contentOf(file), bytes);
  }
}

TEST_F(EditsTest, ShowsWhatCheckFindsBeforeAndAfter) {
  ASSERT_EQ(edit({"animal", "set", "3", "sire=2", "--anyway"}), 0);
  EXPECT_NE(takeOutput().find("adds error parent-sex: "), std::string::npos);
  // An error that existed before does not block a change, even when the animal is renamed.
  ASSERT_EQ(edit({"animal", "rename", "2", "02"}), 0);
  EXPECT_EQ(takeOutput().find("parent-sex"), std::string::npos);
  ASSERT_EQ(edit({"animal", "set", "3", "sire=1"}), 0);
  EXPECT_NE(takeOutput().find("fixes error parent-sex: "), std::string::npos);
}

TEST_F(EditsTest, CheckCuresWhatTheKeeperAgreesTo) {
  ASSERT_EQ(edit({"animal", "set", "3", "sire=3", "--anyway"}), 0);
  ASSERT_EQ(edit({"animal", "set", "5", "sire=5", "--anyway"}), 0);
  const auto answer = [&](const char* answers) {
    return std::system(("printf '" + std::string(answers) + "' | " SPX_PROGRAM " --studbook " + file +
                        " check --fix --only own-parent >/dev/null 2>&1")
                           .c_str());
  };
  const std::string before = tables();
  EXPECT_EQ(answer("n\\nq\\n"), 0);
  EXPECT_EQ(answer(""), 0);
  EXPECT_EQ(tables(), before);
  EXPECT_EQ(answer("n\\ny\\n"), 0);
  EXPECT_EQ(query("SELECT id FROM animals WHERE sire = id"), "3\n");
  EXPECT_EQ(edit({"check", "--yes", "own-parent"}), 0) << takeErrors();
  EXPECT_EQ(takeOutput(), "3: sire 3 -> (empty)\nfixes error own-parent: 3 is its own sire\n");
  EXPECT_EQ(edit({"undo"}), 0);
  EXPECT_EQ(edit({"check", "--yes", "own-paren"}), 2);
}

TEST_F(EditsTest, AnEarlierChangeIsUndoneUnlessALaterOneBuildsOnIt) {
  ASSERT_EQ(edit({"animal", "add", "6", "sex=f"}), 0);                    // 2
  ASSERT_EQ(edit({"animal", "set", "3", "Name=Cy"}), 0);                  // 3
  ASSERT_EQ(edit({"transfer", "6", "--to", "A", "--on", "1999"}), 0);     // 4
  ASSERT_EQ(edit({"animal", "set", "3", "Name=Di", "rearing=hand"}), 0);  // 5
  ASSERT_EQ(edit({"animal", "set", "3", "Tattoo=7", "--new"}), 0);        // 6
  ASSERT_EQ(edit({"animal", "set", "2", "Tattoo=8"}), 0);                 // 7
  const struct {
    const char* change;
    const char* later;
  } refused[] = {{"2", "events of \"6\" were added later, by change 4"},
                 {"3", "Name of \"3\" was changed later, by change 5"},
                 {"6", "\"Tattoo\" were entered later, by change 7"}};
  for (const auto& [change, later] : refused) {
    EXPECT_EQ(edit({"undo", change}), 1);
    EXPECT_NE(takeErrors().find(later), std::string::npos) << later;
  }
  EXPECT_EQ(edit({"undo", "4"}), 0) << takeErrors();
  EXPECT_EQ(edit({"undo", "4"}), 1);
  EXPECT_EQ(edit({"undo", "2", "3", "5", "6", "7"}), 0) << takeErrors();
  import(at("fresh.studbook"), at("in"));
  EXPECT_EQ(tables(), tables(at("fresh.studbook")));
}

TEST_F(EditsTest, RestoresEveryMoment) {
  std::vector<std::string> states = {tables()};
  for (const edit_case& each : EDITS) {
    ASSERT_EQ(edit(each.words) == 0 || !takeErrors().empty(), true);
    states.push_back(tables());
  }
  // One change a day, so that each has a time of its own.
  query("UPDATE changes SET time = '2020-01-' || printf('%02d', change) || 'T12:00:00Z'");
  const std::size_t changes = static_cast<std::size_t>(std::stoi(query("SELECT count(*) FROM changes")));
  ASSERT_GT(changes, 15U);
  std::size_t found = 0;
  for (std::size_t change = 1; change <= changes; ++change) {
    const std::string day = "2020-01-" + std::string(change < 10 ? "0" : "") + std::to_string(change);
    ASSERT_EQ(edit({"restore", "--at", day + "T12:00:00Z", "-o", at("r.studbook"), "--overwrite"}), 0) << takeErrors();
    const std::string state = tables(at("r.studbook"));
    while (found < states.size() && states[found] != state) {
      ++found;
    }
    ASSERT_LT(found, states.size()) << "change " << change;
  }
}

TEST_F(EditsTest, TheHistoryIsReadableBySqlAndRecordsOtherPrograms) {
  ASSERT_EQ(edit({"animal", "set", "3", "Name=Cy", "--as", "Ann", "-m", "from the card"}), 0);
  query("UPDATE animals SET sex = 'm' WHERE id = '3'");
  EXPECT_EQ(edit({"undo"}), 0) << takeErrors();
  EXPECT_EQ(query("SELECT change, author, kind, message, animal, field, before, after FROM history WHERE change < 4"),
            "2|Ann|edit|from the card|3|Name||Cy\n3|another program|outside||3|sex|f|m\n");
  EXPECT_EQ(query("SELECT kind, animal, field, before, after FROM history WHERE change = 4"), "undo|3|sex|m|f\n");
}

TEST_F(EditsTest, TheLogShowsWhatHappenedToWhichAnimal) {
  ASSERT_EQ(edit({"animal", "set", "3", "Name=Cy", "--as", "Ann", "-m", "from the card"}), 0);
  ASSERT_EQ(edit({"transfer", "3", "--to", "A", "--on", "1998"}), 0);
  ASSERT_EQ(edit({"animal", "rename", "3", "03"}), 0);
  ASSERT_EQ(edit({"undo", "2"}), 0);
  query("UPDATE changes SET time = '2020-01-0' || change || 'T12:00:00Z'");
  const struct {
    std::vector<std::string> words;
    const char* shows;
  } cases[] = {
      {{"log", "--columns", "change,kind,undone_by", "--format", "csv"},
       "change,kind,undone_by\n5,undo,\n4,edit,\n3,edit,\n2,edit,5\n1,import,\n"},
      {{"log", "--since", "2020-01-04T00:00:00Z", "--columns", "change", "--format", "csv"}, "change\n5\n4\n"},
      {{"log", "03", "--columns", "change,field,before,after", "--format", "csv"},
       "change,field,before,after\n5,Name,Cy,\n4,id,3,03\n3,event (added),,\n"},
      {{"log", "3", "--columns", "change,field,after", "--format", "csv"}, "3,event date,1998\n"},
      {{"log", "--change", "2", "--format", "json"}, "\"animal\":\"3\",\"field\":\"Name\",\"before\":\"\""},
  };
  for (const auto& [words, shows] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    EXPECT_EQ(edit(words), 0) << takeErrors();
    const std::string shown = takeOutput();
    EXPECT_NE(shown.find(shows), std::string::npos) << shown;
  }
  EXPECT_EQ(edit({"log", "99"}), 1);
  EXPECT_EQ(edit({"log", "--change", "9"}), 1);
}

TEST_F(EditsTest, TheScreenIsSafeFromWhatCellsHold) {
  ASSERT_EQ(edit({"animal", "set", "3", "Name=a\x1b[2Jb\nc"}), 0);
  EXPECT_EQ(takeOutput(), "3: Name (empty) -> a\\x1b[2Jb\\nc\n");
}

TEST_F(EditsTest, FilesOfVersion1AreReadAndBroughtUpToDateByTheFirstChange) {
  const std::string before = tables();
  query("DROP VIEW history");
  for (const char* statement :
       {"ALTER TABLE columns RENAME TO c2",
        "CREATE TABLE columns (of_table TEXT NOT NULL, position INTEGER NOT NULL, title TEXT NOT NULL, field TEXT NOT "
        "NULL, PRIMARY KEY (of_table, position), UNIQUE (of_table, field)) STRICT, WITHOUT ROWID",
        "INSERT INTO columns SELECT of_table, position, title, field FROM c2", "PRAGMA user_version = 1"}) {
    query(statement);
  }
  {
    SQLite::Database database(file, SQLite::OPEN_READWRITE);
    SQLite::Statement triggers(database,
                               "SELECT group_concat('DROP TRIGGER ' || name, ';') FROM sqlite_schema "
                               "WHERE type = 'trigger'");
    triggers.executeStep();
    const std::string drop = triggers.getColumn(0);
    triggers.reset();
    database.exec(drop);
    database.exec("DROP TABLE c2; DROP TABLE change_cells; DROP TABLE changes");
  }
  const std::string old = contentOf(file);
  EXPECT_EQ(tables(), before);
  EXPECT_EQ(edit({"undo"}), 1);
  EXPECT_EQ(edit({"animal", "set", "3", "sex=x"}), 2);
  EXPECT_EQ(edit({"animal", "set", "3", "sex=m", "--dry-run"}), 0) << takeErrors();
  EXPECT_EQ(contentOf(file), old);
  EXPECT_FALSE(std::filesystem::exists(file + ".v1.bak"));
  ASSERT_EQ(edit({"animal", "set", "3", "sex=m"}), 0) << takeErrors();
  EXPECT_NE(takeErrors().find("t.studbook.v1.bak"), std::string::npos);
  EXPECT_EQ(contentOf(file + ".v1.bak"), old);
  EXPECT_EQ(edit({"undo"}), 0) << takeErrors();
  EXPECT_EQ(tables(), before);
}

TEST_F(EditsTest, FiftyWritersAtOnceLoseNothing) {
  std::string line;
  for (int writer = 0; writer < 50; ++writer) {
    const std::string id = "n" + std::to_string(writer);
    line += SPX_PROGRAM " --studbook " + file + " animal add " + id + " sex=f >/dev/null 2>&1 & ";
  }
  ASSERT_EQ(std::system((line + "wait").c_str()), 0);
  EXPECT_EQ(query("SELECT count(*) FROM animals WHERE id LIKE 'n%'"), "50\n");
  EXPECT_EQ(query("SELECT count(DISTINCT change) FROM history WHERE field = 'id'"), "50\n");
}

TEST_F(EditsTest, AFullDiskLeavesTheFile) {
  const std::string before = tables();
  const std::string id(100000, 'x');
  const std::string line = "(ulimit -f 64; trap '' XFSZ; " SPX_PROGRAM " --studbook " + file +
                           " animal set 3 Name=" + id + ") 2>" + at("errors");
  ASSERT_LT(std::filesystem::file_size(file), 1U << 20);
  EXPECT_NE(std::system(line.c_str()), 0);
  EXPECT_FALSE(contentOf(at("errors")).empty());
  EXPECT_EQ(tables(), before);
}

}  // namespace
}  // namespace spx::console
