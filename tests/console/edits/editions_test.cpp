#include <filesystem>
#include <sstream>

#include "console/studbook/write_tables.h"
#include "tests/console/console_fixture.h"
#include "tests/console/tables/zip_file.h"

namespace spx::console {
namespace {

class EditionsTest : public ConsoleTest {
 protected:
  EditionsTest() {
    sheet = table("a.csv",
                  "id,sire,dam,sex,birth_date,Name\n1,,,m,1990,Ada\n2,,,f,1991,\n3,1,2,f,1995-03,Cy\n4,1,2,m,1996,\n");
    events = table("e.csv", "id,date,event,location\n1,1992,arrival,B\n1,1993,arrival,A\n3,1998,arrival,A\n");
    EXPECT_EQ(run({"import", sheet, "--events", events, "--studbook", file}), 0) << takeErrors();
  }

  /// Runs a command on the studbook file. @return its exit code
  int on(std::vector<std::string> words) {
    words.insert(words.begin(), {"--studbook", file});
    takeOutput();
    takeErrors();
    return run(words);
  }

  /// Imports a changed sheet. @return the exit code
  int update(const std::string& animals, std::vector<std::string> options = {}) {
    writeContent(sheet, animals);
    options.insert(options.begin(), {"import", sheet, "--events", events});
    return on(options);
  }

  std::string tables() {
    std::filesystem::create_directory(at("out"));
    writeTables(file, at("out"));
    std::string text;
    for (const std::string& name : tableFiles(file)) {
      text += contentOf(at("out/" + name));
    }
    return text;
  }

  static constexpr char HEADER[] = "id,sire,dam,sex,birth_date,Name\n";
  std::string sheet;
  std::string events;
  const std::string file = at("t.studbook");
};

TEST_F(EditionsTest, AnImportUpdatesAsOneChange) {
  const std::string before = tables();
  // Columns in another order, other words with the same meaning, one animal removed and one added, a new
  // column and no "dam".
  writeContent(events, "id,date,event,location\n1,1992,arrival,C\n3,1998,ARRIVAL,A\n5,2001,arrival,A\n");
  ASSERT_EQ(update("Name,id,sex,sire,birth_date,Tag\nAda,1,male,NA,1990,x\nEve,2,F,,1991,\nCy,3,f,1,1995-03,\n"
                   "Dan,5,m,3,2000,\n"),
            0)
      << takeErrors();
  const std::string shown = takeOutput();
  for (const char* line : {"new field Tag\n", "1: Tag (empty) -> x\n", "2: Name (empty) -> Eve\n", "4: removed animal",
                           "5: new animal: ", "1: event 1992 arrival C: location B -> C\n",
                           "1: removed event: date 1993", "5: new event: date 2001"}) {
    EXPECT_NE(shown.find(line), std::string::npos) << line << shown;
  }
  EXPECT_EQ(shown.find("3: "), std::string::npos) << shown;
  const std::string told = takeErrors();
  EXPECT_NE(told.find("animals: 1 added, 2 changed, 1 removed"), std::string::npos) << told;
  EXPECT_NE(told.find("only in the studbook, kept: dam"), std::string::npos) << told;
  ASSERT_EQ(on({"undo"}), 0) << takeErrors();
  EXPECT_EQ(tables(), before);
  ASSERT_EQ(on({"import", file}), 0);
  EXPECT_NE(takeErrors().find("nothing was changed"), std::string::npos);
}

TEST_F(EditionsTest, HandEditsAreNotTakenBackUnasked) {
  const std::string former = contentOf(sheet);
  ASSERT_EQ(on({"animal", "set", "3", "Name=Zoe"}), 0);
  ASSERT_EQ(on({"animal", "set", "2", "Name=Bea"}), 0);
  ASSERT_EQ(on({"undo"}), 0);
  ASSERT_EQ(on({"animal", "add", "6", "dam=3"}), 0);
  ASSERT_EQ(on({"animal", "remove", "4"}), 0);
  ASSERT_EQ(on({"event", "set", "3", "location=B"}), 0);
  ASSERT_EQ(on({"event", "remove", "1", "--number", "2"}), 0);
  ASSERT_EQ(on({"animal", "rename", "1", "01"}), 0);
  const std::string edited = tables();
  EXPECT_EQ(update(former), 1);
  const std::string told = takeErrors();
  for (const char* line : {"\n  3: Name Zoe, in the table Cy\n", "6 was added by hand", "4 was removed by hand",
                           "3: event 1998 arrival: location B, in the table A", "1: event 1993 arrival was removed",
                           "1: id 01, in the table 1", "3: sire 01, in the table 1"}) {
    EXPECT_NE(told.find(line), std::string::npos) << line << told;
  }
  EXPECT_EQ(told.find("Bea"), std::string::npos);
  EXPECT_EQ(tables(), edited);
  // Changes of the sheet elsewhere are always taken; hand edits are kept as long as --ours is given.
  const std::string changed = former + "7,,2,f,2001,Gil\n";
  for (int twice = 0; twice < 2; ++twice) {
    ASSERT_EQ(update(changed, {"--ours"}), 0) << takeErrors();
    EXPECT_NE(takeErrors().find("made by hand stay as they are"), std::string::npos);
    EXPECT_NE(tables().find("Zoe"), std::string::npos);
    EXPECT_NE(tables().find("Gil"), std::string::npos);
  }
  ASSERT_EQ(update(changed, {"--theirs"}), 0) << takeErrors();
  EXPECT_EQ(tables().find("Zoe"), std::string::npos);
  EXPECT_EQ(tables().find("\n01,"), std::string::npos);
  EXPECT_EQ(update(changed), 0) << takeErrors();
}

TEST_F(EditionsTest, EveryTableIsUpdatedByWhatNamesItsRows) {
  std::filesystem::create_directory(at("in"));
  const auto write = [&](const char* animals, const char* locations, const char* programs) {
    writeContent(at("in/animals.csv"), std::string("id,sex,birth_location\n") + animals);
    writeContent(at("in/locations.csv"), std::string("level,id,name,latitude\n") + locations);
    writeContent(at("in/programs.csv"), std::string("name,Since\n") + programs);
  };
  write("1,m,1.1\n1,f,1.2\n2,f,1.2\n", "region,1,West,\nzoo,1.1,A,\nzoo,1.2,B,\n", "P,1990\nQ,1991\n");
  ASSERT_EQ(on({"import", at("in"), "--replace"}), 0) << takeErrors();
  EXPECT_TRUE(std::filesystem::exists(file + ".bak"));
  ASSERT_EQ(on({"location", "set", "B", "name=Bee"}), 0);
  // The second of two animals with one ID, a location by its identifier, a programme by its name.
  write("1,m,1.1\n1,f,1.1\n2,f,1.2\n", "region,1,West,\nzoo,1.1,A,48.5\nzoo,1.3,C,\nzoo,1.2,B,\n", "Q,1995\nR,2000\n");
  ASSERT_EQ(on({"import", at("in")}), 1);
  EXPECT_NE(takeErrors().find("B: name Bee, in the table B"), std::string::npos);
  ASSERT_EQ(on({"import", at("in"), "--ours"}), 0) << takeErrors();
  const std::string shown = takeOutput();
  for (const char* line : {"1: birth_location 1.2 -> 1.1\n", "A: latitude (empty) -> 48.5\n",
                           "C: new location: ", "removed programme: name P, Since 1990\n", "Q: Since 1991 -> 1995\n",
                           "R: new programme: "}) {
    EXPECT_NE(shown.find(line), std::string::npos) << line << shown;
  }
  EXPECT_NE(tables().find("zoo,1.2,Bee,"), std::string::npos);
  EXPECT_EQ(run({"diff", at("in"), file, "--format", "csv"}), 1);
  EXPECT_NE(takeOutput().find("location,Bee,changed,,name,B,Bee\n"), std::string::npos);
  ASSERT_EQ(on({"import", at("in"), "--theirs"}), 0) << takeErrors();
  EXPECT_EQ(run({"diff", at("in"), file}), 0) << takeOutput();
}

TEST_F(EditionsTest, AnUpdateThatCannotBeLoadedChangesNothing) {
  const std::string before = contentOf(file);
  const struct {
    const char* animals;
    const char* reason;
  } cases[] = {{"id,sex\n1,x\n", "a.csv:2"},
               {"id,id\n1,1\n", "--map"},
               {"sex\nm\n", "no column \"id\""},
               {"id,sex\n1,m\n2\n", "a.csv:3"}};
  for (const auto& [animals, reason] : cases) {
    EXPECT_NE(update(animals, {"--theirs"}), 0);
    EXPECT_NE(takeErrors().find(reason), std::string::npos) << reason;
    EXPECT_EQ(contentOf(file), before);
  }
  EXPECT_EQ(update(HEADER, {"--ours", "--theirs"}), 2);
}

TEST_F(EditionsTest, DiffShowsWhatTheEditionsSayDifferently) {
  const std::string other = table("b.csv",
                                  "id,father,dam,sex,birth_date,Name,Tag\n1,,,male,1990,Ada,\n2,.,,f,1991-02,,\n"
                                  "X3,1,2,F,1995-03,Cy,\n5,X3,,u,2001,,9\n");
  const struct {
    const char* after;
    int code;
    std::vector<const char*> lines;
  } cases[] = {
      {sheet.c_str(), 0, {"kind,name,change,event,field,before,after\n"}},
      {other.c_str(),
       1,
       {"animal,2,changed,,birth_date,1991,1991-02\n", "animal,X3,renamed?,,id,3,X3\n", "animal,4,removed,,,",
        "animal,5,added,,,,\"sex u, birth_date 2001, sire X3\"\n", "field,Tag,added,", "figure,animals,same,,,4,4\n",
        "figure,living,same,,,4,4\n"}},
      {"/none", 2, {""}},
  };
  for (const auto& [after, code, lines] : cases) {
    takeOutput();
    EXPECT_EQ(run({"diff", sheet, after, "--format", "csv"}), code) << takeErrors();
    const std::string shown = takeOutput();
    for (const char* line : lines) {
      EXPECT_NE(shown.find(line), std::string::npos) << line << shown;
    }
    EXPECT_EQ(shown.find("animal,1,"), std::string::npos);
  }
  EXPECT_EQ(run({"diff", sheet, other}), 1);
  EXPECT_NE(takeOutput().find("renamed? is a guess: 1 animal has another ID"), std::string::npos);
}

// A rename by hand is known, also where nothing else of the animal is as it was.
TEST_F(EditionsTest, AnAnimalThatWasRenamedAndChangedByHandStays) {
  const std::string former = contentOf(sheet);
  ASSERT_EQ(on({"animal", "rename", "3", "03"}), 0);
  ASSERT_EQ(on({"animal", "set", "03", "sex=m", "birth_date=1996"}), 0);
  ASSERT_EQ(on({"animal", "set", "4", "Name=Di"}), 0);
  const std::string edited = tables();
  const std::string shorter = former.substr(0, former.find("4,1,2"));
  EXPECT_EQ(update(shorter), 1);
  const std::string told = takeErrors();
  for (const char* line : {"3: id 03, in the table 3\n", "3: sex m, in the table f\n",
                           "4 was changed by hand, and the table lacks it\n"}) {
    EXPECT_NE(told.find(line), std::string::npos) << line << told;
  }
  ASSERT_EQ(update(shorter, {"--ours"}), 0) << takeErrors();
  EXPECT_EQ(tables(), edited);
  ASSERT_EQ(update(shorter, {"--theirs"}), 0) << takeErrors();
  EXPECT_EQ(update(shorter), 0);
  EXPECT_NE(takeErrors().find("the studbook already has these values; nothing was changed"), std::string::npos);
}

TEST_F(EditionsTest, AnAnimalWithEventsEnteredByHandStays) {
  ASSERT_EQ(on({"event", "add", "4", "date=1999", "event=arrival", "location=B"}), 0) << takeErrors();
  const std::string edited = tables();
  writeContent(sheet, contentOf(sheet).substr(0, contentOf(sheet).find("4,1,2")));
  EXPECT_EQ(on({"import", sheet}), 1) << "the sheet of animals alone";
  EXPECT_NE(takeErrors().find("4 has events entered by hand, and the table lacks it"), std::string::npos);
  ASSERT_EQ(on({"import", sheet, "--ours"}), 0) << takeErrors();
  EXPECT_EQ(tables(), edited);
}

TEST_F(EditionsTest, TablesAreComparedAsTheOptionsOfTheProgramRead) {
  const std::string before = table("b.csv", "id,dob,Name\n1,04/05/1998,a\nTotal: 1 animal,,\n");
  const std::string after = table("c.csv", "id,dob,Name\n1,1998-05-04,a\n");
  EXPECT_EQ(run({"diff", before, after}), 2);
  EXPECT_EQ(run({"--footer", "skip", "--dates", "day-first", "diff", before, after}), 0)
      << takeErrors() << takeOutput();
  EXPECT_EQ(run({"--footer", "skip", "--dates", "month-first", "diff", before, after}), 1);
}

TEST_F(EditionsTest, FieldsThatWereRemovedOrRenamedByHandStaySo) {
  const std::string former = contentOf(sheet);
  ASSERT_EQ(on({"field", "remove", "Name"}), 0) << takeErrors();
  std::string edited = tables();
  EXPECT_EQ(update(former), 1);
  EXPECT_NE(takeErrors().find("field Name was removed by hand"), std::string::npos);
  ASSERT_EQ(update(former, {"--ours"}), 0) << takeErrors();
  EXPECT_EQ(tables(), edited);
  ASSERT_EQ(update(former, {"--theirs"}), 0) << takeErrors();
  EXPECT_NE(tables().find("Name"), std::string::npos);
  ASSERT_EQ(on({"undo"}), 0) << takeErrors();
  ASSERT_EQ(on({"undo"}), 0) << takeErrors();
  // The column of a field that was renamed still belongs to it.
  ASSERT_EQ(on({"field", "rename", "Name", "House"}), 0) << takeErrors();
  edited = tables();
  ASSERT_EQ(update(former), 0) << takeErrors();
  EXPECT_EQ(tables(), edited);
  ASSERT_EQ(update(former.substr(0, former.find("4,1,2")) + "4,1,2,m,1996,Bertha\n"), 0) << takeErrors();
  EXPECT_NE(tables().find("4,1,2,m,1996,Bertha\n"), std::string::npos) << tables();
  EXPECT_EQ(tables().find("Name"), std::string::npos);
}

TEST_F(EditionsTest, ARenameIsGuessedOnlyWhereTheBirthIsKnown) {
  const std::string rows = std::string(HEADER) + "1,,,m,1990,Ada\n2,,,f,1991,\n3,1,2,f,1995-03,Cy\n";
  const std::pair<const char*, const char*> cases[] = {
      {"40,1,2,m,1996,\n", "4 -> 40"},
      {"40,1,2,m,?,\n", ""},
      {"40,1,2,m,1996,\n41,4,,f,2000,\n", ""},  // 4 is still named as a parent
  };
  for (const auto& [row, renamed] : cases) {
    SCOPED_TRACE(row);
    ASSERT_EQ(update(rows + row, {"--dry-run"}), 0) << takeErrors();
    const std::string shown = takeOutput();
    EXPECT_EQ(shown.find("id 4 -> 40") != std::string::npos, *renamed != '\0') << shown;
  }
  ASSERT_EQ(update(rows + "4,1,2,m,?,\n"), 0) << takeErrors();
  ASSERT_EQ(update(rows + "40,1,2,m,?,\n", {"--dry-run"}), 0) << takeErrors();
  EXPECT_NE(takeOutput().find("4: removed animal"), std::string::npos) << "two births that nobody knows";
}

TEST_F(EditionsTest, WorkbooksAreComparedAndUpdateAStudbook) {
  ASSERT_EQ(on({"export", "tables", "--as", "xlsx", "--to", home}), 0) << takeErrors();
  const std::string workbook = at("t.xlsx");
  EXPECT_EQ(run({"diff", workbook, file}), 0) << takeOutput();
  EXPECT_EQ(on({"import", workbook}), 0);
  EXPECT_NE(takeErrors().find("the studbook already has these values; nothing was changed"), std::string::npos);
  const auto cell = [](const std::string& text) {
    return "<table:table-cell office:value-type='string'><text:p>" + text + "</text:p></table:table-cell>";
  };
  std::string content =
      "<office:document-content xmlns:office='o' xmlns:table='t' xmlns:text='x'><office:body><office:spreadsheet>";
  const std::pair<const char*, std::vector<std::string>> sheets[] = {
      {"animals", {"id,sire,dam,sex,birth_date,Name", "1,,,male,1990,Ada", "2,,,f,1991,", "3,1,2,f,1995-03,Di"}},
      {"events", {"id,date,event,location", "1,1992,arrival,B", "1,1993,arrival,A", "3,1998,arrival,C"}}};
  for (const auto& [name, rows] : sheets) {
    content += "<table:table table:name='" + std::string(name) + "'>";
    for (const std::string& row : rows) {
      content += "<table:table-row>";
      std::istringstream cells(row);
      for (std::string text; std::getline(cells, text, ',');) {
        content += cell(text);
      }
      content += "</table:table-row>";
    }
    content += "</table:table>";
  }
  table("new.ods",
        zipFile({{"content.xml", content + "</office:spreadsheet></office:body></office:document-content>"}}));
  EXPECT_EQ(run({"diff", file, at("new.ods"), "--format", "csv", "--where", "kind!=figure"}), 1);
  const std::string shown = takeOutput();
  for (const char* line :
       {"animal,3,changed,,Name,Cy,Di\n", "animal,4,removed,", "event,3,changed,1998 arrival,location,A,C\n"}) {
    EXPECT_NE(shown.find(line), std::string::npos) << line << shown;
  }
  ASSERT_EQ(on({"import", at("new.ods")}), 0) << takeErrors();
  EXPECT_EQ(run({"diff", file, at("new.ods")}), 0) << takeOutput();
  ASSERT_EQ(on({"undo"}), 0);
  EXPECT_EQ(run({"diff", workbook, file}), 0) << takeOutput();
}

TEST_F(EditionsTest, AnUpdateKnowsThePlacesOfTheStudbook) {
  const std::string places = table("l.csv", "level,id,name\nzoo,1,Old Barn\nyard,1.1,Yard\n");
  const std::string home_sheet = table("h.csv", "id,birth_location\n1,1.1\n2,Old Barn\n");
  ASSERT_EQ(run({"import", home_sheet, "--locations", places, "--studbook", file, "--replace"}), 0) << takeErrors();
  writeContent(home_sheet, "id,birth_location\n1,Old Barn\n2,1.1\n3,Yard\n");
  ASSERT_EQ(on({"import", home_sheet}), 0) << takeErrors();
  EXPECT_NE(takeErrors().find("only in the studbook, kept: locations"), std::string::npos);
  EXPECT_NE(tables().find("\nzoo,1,Old Barn\nyard,1.1,Yard\n"), std::string::npos);
  writeContent(home_sheet, "id,birth_location\n1,1.2\n");
  EXPECT_EQ(on({"import", home_sheet}), 1);
  EXPECT_NE(takeErrors().find("\"1.2\" is not in the locations table"), std::string::npos);
}

TEST_F(EditionsTest, ADryRunWritesNothingAndSaysSo) {
  const std::string bytes = contentOf(file);
  for (const std::string& target : {file, at("new.studbook")}) {
    EXPECT_EQ(run({"--studbook", target, "import", sheet, "--events", events, "--dry-run"}), 0);
  }
  EXPECT_EQ(on({"import", sheet, "--events", events, "--dry-run", "--replace"}), 0);
  EXPECT_NE(takeErrors().find("dry run: nothing was written\n"), std::string::npos);
  EXPECT_EQ(contentOf(file), bytes);
  EXPECT_FALSE(std::filesystem::exists(at("new.studbook")));
}

TEST_F(EditionsTest, WhatTheImportHasSaidIsNotRepeated) {
  const std::string odd = table("o.csv", "id,sire,sex\nP1,,m\n2,9,f\n");
  ASSERT_EQ(run({"import", odd, "--studbook", file, "--replace", "--placeholders"}), 0);
  const std::string told = takeErrors();
  EXPECT_NE(told.find("treated as a placeholder because of its ID: P1\n"), std::string::npos);
  EXPECT_NE(told.find("1 parent has no record (1 reference): 9\n"), std::string::npos);
  for (const char* command : {"list", "summary", "inbreeding"}) {
    EXPECT_EQ(on({command}), 0);
    EXPECT_EQ(takeErrors(), "") << command;
  }
  EXPECT_EQ(run({"--studbook", odd, "list"}), 0);
  EXPECT_NE(takeErrors().find("1 parent has no record"), std::string::npos);
}

}  // namespace
}  // namespace spx::console
