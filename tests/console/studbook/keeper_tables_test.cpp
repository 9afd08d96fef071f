#include "console/studbook/keeper_tables.h"

#include "console/studbook/column_mapping.h"
#include "console/studbook/import_studbook.h"
#include "console/studbook/open_tables.h"
#include "console/studbook/write_tables.h"
#include "console/tables/animals_table.h"
#include "console/tables/workbook_writer.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

constexpr char MESSY[] =
    "Studbook of the arrui;;;;;;\n"
    ";;;;;;\n"
    "Studbook No.;House name;Vater;Geschlecht;Geboren;Gestorben;Gewicht\n"
    "0001;\xC3\x84sop;;M;25.12.1988;;45,5\n"
    "0002;Zo\xC3\xAB;;W;1990-07-00;?;38,25\n"
    "0003;;0001;0.1;4.6.1993;ca. 1999;\n"
    ";;;;;;\n"
    "Total;3;;;;;\n";

class KeeperTablesTest : public ConsoleTest {
 protected:
  /// The rows of the animals and the notes on them; or the reason why they are refused.
  static std::string read(const studbook_files& files) {
    try {
      const studbook_tables tables = openTables(files);
      const auto rows = tables.animals.open();
      const ColumnTitles columns(tables.animals.name, rows->titles(), animalFields(), tables.animals.titles);
      rows->settleColumns(animalFields(), columns);
      std::string text;
      while (rows->next()) {
        for (const std::string_view cell : rows->row()) {
          text += std::string(cell) + "|";
        }
        text += "\n";
      }
      return text + tables.notes->text();
    } catch (const std::exception& error) {
      return error.what();
    }
  }

  studbook_files csv(const std::string& content, const reading_options& reading = {}) {
    studbook_files files;
    files.animals = table("a.csv", content);
    files.reading = reading;
    return files;
  }
};

TEST_F(KeeperTablesTest, ReadsATableAsAKeeperWroteIt) {
  const std::string cells =
      "0001|\xC3\x84sop||M|1988-12-25||45.5|\n"
      "0002|Zo\xC3\xAB||female|1990-07||38.25|\n"
      "0003||0001|female|1993-06-04|~1999||\n";
  const std::string name = at("a.csv") + ": ";
  const std::string notes =
      name + "the titles are in line 3; the lines above are ignored\n" + name + "line 8 is skipped: \"Total\"\n" +
      name + "2 dates with the day first: \"25.12.1988\" is 1988-12-25\n" + name +
      "2 numbers with a decimal comma: \"45,5\" is 45.5\n" + name + "2 sexes in other words: \"W\" is female\n" + name +
      "1 date with 00 for unknown parts: \"1990-07-00\" is 1990-07\n" + name +
      "1 unknown date of death, read as a living animal: \"?\" is not known\n" + name +
      "1 approximate date: \"ca. 1999\" is ~1999\n";
  EXPECT_EQ(read(csv(MESSY, {.footer = FOOTER::SKIP})), cells + notes);
  EXPECT_NE(read(csv(MESSY)).find("\"Total\" looks like a footer; use --footer skip"), std::string::npos);
  EXPECT_NE(read(csv(MESSY, {.footer = FOOTER::KEEP})).find("Total|3|"), std::string::npos);
}

TEST_F(KeeperTablesTest, AColumnDecidesTheOrderOfDayAndMonthOrIsRefused) {
  const struct {
    const char* content;
    DATE_ORDER order;
    const char* expected;
  } cases[] = {
      {"id,born\n1,04/05/1998\n2,25/05/1998\n", DATE_ORDER::UNKNOWN, "1|1998-05-04|\n2|1998-05-25|\n"},
      {"id,born\n1,04/05/1998\n2,05/25/1998\n", DATE_ORDER::UNKNOWN, "1|1998-04-05|\n2|1998-05-25|\n"},
      {"id,born\n1,04/05/1998\n2,05/05/1998\n", DATE_ORDER::UNKNOWN,
       "column \"born\": dates such as \"04/05/1998\" could have the day or the month first; use --dates day-first or "
       "--dates month-first"},
      {"id,born,died\n1,04/05/1998,31/12/1999\n", DATE_ORDER::UNKNOWN,
       "column \"born\": dates such as \"04/05/1998\" could have the day or the month first (column \"died\" has the "
       "day first); use --dates day-first or --dates month-first"},
      {"id,born\n1,04/05/1998\n2,05/25/1998\n3,25/05/1998\n", DATE_ORDER::UNKNOWN,
       "column \"born\": some dates have the day first, others the month"},
      {"id,born\n1,04/05/1998\n", DATE_ORDER::MONTH_FIRST, "1|1998-04-05|\n"},
      {"id,born\n1,25/05/1998\n", DATE_ORDER::MONTH_FIRST,
       "column \"born\": \"25/05/1998\" has the day first, contrary to --dates month-first"},
  };
  for (const auto& [content, order, expected] : cases) {
    SCOPED_TRACE(content);
    EXPECT_EQ(read(csv(content, {.dates = order})).substr(0, std::string_view(expected).size()), expected);
  }
}

TEST_F(KeeperTablesTest, CommasAreDecimalOnlyWhereTheWholeColumnIsNumbers) {
  EXPECT_EQ(read(csv("id;w\n1;1,234\n2;5\n")), "1|1,234|\n2|5|\n");
  EXPECT_EQ(read(csv("id;w\n1;1,5\n2;x\n")), "1|1,5|\n2|x|\n");
  EXPECT_EQ(read(csv("id;f\n1;0,125\n")).substr(0, 9), "1|0.125|\n");
  EXPECT_EQ(read(csv("id;w\n1;'=1+1\n2;'x\n")).substr(0, 14), "1|=1+1|\n2|'x|\n");
}

TEST_F(KeeperTablesTest, EncodingsAreFoundOutOrGiven) {
  const std::string utf16 = std::string(
      "\xFF\xFEi\0d\0;\0n\0\n\0"
      "1\0;\0\xE9\0\n\0",
      20);
  EXPECT_EQ(read(csv(utf16)), "1|\xC3\xA9|\n" + at("a.csv") + ": read as UTF-16LE; --encoding NAME overrides this\n");
  EXPECT_EQ(read(csv(utf16.substr(2))).substr(0, 6), "1|\xC3\xA9|\n");
  EXPECT_EQ(read(csv("id;n\n1;\x80\n")), "1|\xE2\x82\xAC|\n" + at("a.csv") +
                                             ": read as Windows-1252 (or Latin-1); --encoding NAME overrides this\n");
  EXPECT_EQ(read(csv("id;n\n1;\xC3\xA9\n")), "1|\xC3\xA9|\n");
  EXPECT_EQ(read(csv("id;n\n1;\x8E\n", {.encoding = "cp850"})), "1|\xC3\x84|\n");
  EXPECT_NE(read(csv("id\n", {.encoding = "latin 99"})).find("--encoding: \"latin 99\" is not known"),
            std::string::npos);
}

TEST_F(KeeperTablesTest, AWorkbookGivesItsTablesByTheirSheets) {
  WorkbookWriter writer(at("a.xlsx"));
  const auto sheet = [&](const char* name, const std::vector<std::string>& titles,
                         const std::vector<std::string_view>& row) {
    writer.beginSheet(name, titles, std::vector<SHEET_COLUMN>(titles.size()));
    writer.addRow(row);
  };
  sheet("Read me", {"text"}, {"a studbook"});
  sheet("ANIMALS", {"ID", "born"}, {"007", "12 May 1998"});
  sheet("events", {"id", "date", "event"}, {"007", "1999", "arrival"});
  sheet("other", {"id"}, {"8"});
  writer.finish();
  studbook_files files;
  files.animals = at("a.xlsx");
  const studbook_tables tables = openTables(files);
  EXPECT_EQ(tables.animals.name, at("a.xlsx") + " (ANIMALS)");
  EXPECT_TRUE(tables.events.open);
  EXPECT_FALSE(tables.locations.open);
  EXPECT_EQ(read(files).substr(0, 15), "007|1998-05-12|");
  files.reading.sheet = "Other";
  EXPECT_EQ(read(files).substr(0, 2), "8|");
  files.reading.sheet = "evnts";
  EXPECT_NE(read(files).find("did you mean \"events\"?"), std::string::npos);
}

TEST_F(KeeperTablesTest, AWorkbookComesBackFromAStudbookFile) {
  const auto import = [&](const studbook_files& files, const char* name) {
    NewStudbook book(at(name));
    loadStudbook(book.copying(openTables(files)));
    book.finish({IMPORT_CHANGE, "import", "", ""});
  };
  import(csv(MESSY, {.footer = FOOTER::SKIP}), "a.studbook");
  writeTables(at("a.studbook"), home, {.as_workbook = true});
  studbook_files workbook;
  workbook.animals = at("a.xlsx");
  import(workbook, "b.studbook");
  writeTables(at("b.studbook"), home, {.csv = {';', true}});
  EXPECT_EQ(contentOf(at("animals.csv")),
            "\xEF\xBB\xBFStudbook No.;House name;Vater;Geschlecht;Geboren;Gestorben;Gewicht\n"
            "0001;\xC3\x84sop;;M;1988-12-25;;45.5\n"
            "0002;Zo\xC3\xAB;;female;1990-07;;38.25\n"
            "0003;;0001;female;1993-06-04;~1999;\n");
}

TEST_F(KeeperTablesTest, AMappingIsKeptAndUsedAgain) {
  const std::string studbook = at("a.studbook");
  const std::string mapping = at("columns.txt");
  table("a.csv", "Nr,x,born\n1,a,04/05/1998\n");
  EXPECT_EQ(run({"--studbook", studbook, "--map", "id=Nr", "--map", "dam=x", "--dates", "day-first", "--mapping",
                 mapping, "import", at("a.csv")}),
            0);
  EXPECT_EQ(run({"--studbook", studbook, "import", at("a.csv")}), 1);
  studbook_files files = csv("x,Nr,born\nb,2,04/05/1998\n");
  readMapping(mapping, files);
  EXPECT_EQ(read(files).substr(0, 15), "b|2|1998-05-04|");
}

struct word_case {
  const char* title;
  const char* typed;
  const char* read;
};

// Two animals with the same word for a wild parent would be full siblings if it were an ID.
TEST_F(KeeperTablesTest, WordsOfOtherLanguagesAreRead) {
  const word_case cases[] = {
      {"sire", "Wildfang", "WILD"},
      {"dam", "SAUVAGE", "WILD"},
      {"dam", "unbekannt", ""},
      {"sire", "Wildfang 7", "Wildfang 7"},
      {"origin", "wild caught", "wild-born"},
      {"origin", "Nachzucht", "captive-born"},
      {"origin", "Captivit\xC3\xA9", "captive-born"},
      {"rearing", "Handaufzucht", "hand"},
      {"birth_location", "inconnu", ""},
      {"birth_location", "Wildfang", "Wildfang"},
      {"death_event", "Tod", "death"},
      {"house name", "Wildfang", "Wildfang"},
  };
  for (const auto& [title, typed, expected] : cases) {
    const std::string found = read(csv("id," + std::string(title) + "\n1," + typed + "\n"));
    EXPECT_EQ(found.substr(0, found.find('\n')), "1|" + std::string(expected) + "|") << title << " " << typed;
    EXPECT_EQ(found.find("1 word of another language: \"") != std::string::npos, std::string(typed) != expected);
  }
  const std::string events = table("e.csv", "id,date,event,location\n1,2001,Ankunft,B\n1,2002,Transfer,C\n");
  ASSERT_EQ(run({"--studbook", table("a.csv", "id\n1\n"), "--events", events, "list", "--format", "csv", "--columns",
                 "current_location_name"}),
            0)
      << takeErrors();
  EXPECT_EQ(takeOutput(), "current_location_name\nC\n");
}

TEST_F(KeeperTablesTest, FootersAreNotAnimals) {
  const struct {
    const char* row;
    bool is_footer;
  } cases[] = {
      {"Total,,", true},       {"Summe,6,", true}, {"TOTAL:,6,f", true}, {"Source: ISIS,,", true},
      {"* estimated,,", true}, {",Total,", true},  {"Totali,,f", false}, {"Total 7,1,f", false},
      {"Notes 2026,,", true},  {"Noted,,", false},
  };
  for (const auto& [row, is_footer] : cases) {
    const std::string content = "id,sire,sex\n1,,m\n" + std::string(row) + "\n";
    EXPECT_EQ(read(csv(content)).find("looks like a footer") != std::string::npos, is_footer) << row;
    EXPECT_EQ(read(csv(content, {.footer = FOOTER::SKIP})).find("line 3 is skipped") != std::string::npos, is_footer);
  }
}

TEST_F(KeeperTablesTest, AFaultyTableOfAnimalsDoesNotMakeItsEventsFaulty) {
  const std::string events = table("e.csv", "id,date,event\n1,2001,arrival\n");
  EXPECT_EQ(run({"--studbook", table("a.csv", "id,dob\n1,04/05/1998\n"), "--events", events, "list"}), 1);
  const std::string told = takeErrors();
  EXPECT_NE(told.find("--dates day-first"), std::string::npos);
  EXPECT_NE(told.find("1 fault; nothing was loaded"), std::string::npos);
}

TEST_F(KeeperTablesTest, ColumnsOfEveryTableAreMapped) {
  const std::string animals = table("a.csv", "Nr,Heim\n1,X\n");
  const std::string events = table("e.csv", "Tier;Wann;Was;Wohin\n1;2001;arrival;1.1\n");
  const std::string places = table("l.csv", "Stufe,Nummer,Wie\nzoo,1,X\nyard,1.1,Y\n");
  const auto import = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"--studbook", at("a.studbook"), "--events", events, "--locations", places,
                                     "import", animals, "--replace"});
    takeErrors();
    return run(options);
  };
  const std::vector<std::string> maps = {"--map", "animals.id=Nr",       "--map",     "birth_location=Heim",
                                         "--map", "events.id=Tier",      "--map",     "events.date=Wann",
                                         "--map", "events.event=Was",    "--map",     "events.location=Wohin",
                                         "--map", "locations.id=Nummer", "--map",     "locations.level=Stufe",
                                         "--map", "locations.name=Wie",  "--mapping", at("m.txt")};
  EXPECT_EQ(import({"--map", "id=Nr", "--map", "events.id=Tier"}), 1);
  EXPECT_NE(takeErrors().find("--map events.date="), std::string::npos);
  EXPECT_EQ(import({"--map", "event.id=Tier"}), 2);
  EXPECT_NE(takeErrors().find("no table \"event\""), std::string::npos);
  EXPECT_EQ(import({"--map", "id=Nr", "--map", "events.sire=Tier"}), 2);
  ASSERT_EQ(import(maps), 0) << takeErrors();
  EXPECT_NE(takeErrors().find("wrote " + at("m.txt")), std::string::npos);
  ASSERT_EQ(import({"--mapping", at("m.txt")}), 0) << takeErrors();
  takeOutput();
  EXPECT_EQ(run({"--studbook", at("a.studbook"), "show", "1", "--format", "json"}), 0);
  EXPECT_NE(takeOutput().find("\"current_location_name\":\"Y\""), std::string::npos);
}

// Spreadsheets see no formula, and every text comes back.
TEST_F(KeeperTablesTest, TextsThatLookLikeFormulasComeBack) {
  const std::string texts[] = {"=1+1", "+49 30", "-", "-x", "@a", "-1.5", "'=1", "''=1", "'a", "=", "+1"};
  std::string rows = "id,note\n";
  const std::string studbook = at("a.studbook");
  for (std::size_t each = 0; each < std::size(texts); ++each) {
    rows += std::to_string(each + 1) + "," + (texts[each].starts_with("'") && texts[each] != "'a" ? "'" : "") +
            texts[each] + "\n";
  }
  ASSERT_EQ(run({"--studbook", studbook, "import", table("t.csv", rows)}), 0);
  const std::vector<std::string> forms[] = {{"tables"},
                                            {"tables", "--bom"},
                                            {"tables", "--bom", "--separator", "tab"},
                                            {"tables", "--as", "xlsx"},
                                            {"animals"}};
  for (const std::vector<std::string>& form : forms) {
    SCOPED_TRACE(testing::PrintToString(form));
    std::vector<std::string> words = {"--studbook", studbook, "export"};
    words.insert(words.end(), form.begin(), form.end());
    words.insert(words.end(), {"--to", home, "--overwrite"});
    ASSERT_EQ(run(words), 0);
    const std::string file = at(form.back() == "xlsx" ? "a.xlsx" : "animals.csv");
    if (form.size() > 1 || form[0] == "animals") {
      const std::string content = contentOf(file);
      for (const char* formula : {",=1", ",+49", ",-x", ",@a", "\t=1", "\t-x"}) {
        EXPECT_EQ(content.find(formula), std::string::npos) << formula;
      }
    }
    ASSERT_EQ(run({"--studbook", at("b.studbook"), "import", file, "--replace"}), 0) << takeErrors();
    takeOutput();
    ASSERT_EQ(run({"--studbook", at("b.studbook"), "list", "--columns", "note", "--format", "json"}), 0);
    std::string expected;
    for (const std::string& text : texts) {
      expected += (expected.empty() ? "[\n" : ",\n") + ("{\"user_fields\":{\"note\":\"" + text + "\"}}");
    }
    EXPECT_EQ(takeOutput(), expected + "\n]\n");
  }
}

}  // namespace
}  // namespace spx::console
