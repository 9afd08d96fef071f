#include "console/output/table.h"

#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "console/base/failure.h"
#include "console/output/table_options.h"

namespace spx::console {
namespace {

constexpr double NOT_KNOWN = std::numeric_limits<double>::quiet_NaN();

known_date year(const char* text) {
  return {qs_lib::msToDay(qs_lib::dateToJulian(text)), DATE_ACCURACY::BY_YEAR};
}

known_date month(const char* text) {
  return {qs_lib::msToDay(qs_lib::dateToJulian(text)), DATE_ACCURACY::BY_MONTH};
}

/// Wide and combining characters, a number that is not known, dates by year, and texts that would clear the screen.
Table hostileTable() {
  Table table({{"id", "ID"},
               {.name = "name", .title = "House name"},
               {.name = "born", .title = "Born", .kind = COLUMN_KIND::DATE},
               {.name = "mk",
                .title = "Mean kinship",
                .kind = COLUMN_KIND::REAL,
                .decimals = 4,
                .help = "average kinship with the living animals"},
               {.name = "share", .title = "Share", .kind = COLUMN_KIND::PERCENT, .decimals = 1},
               {.name = "alive", .title = "Alive", .kind = COLUMN_KIND::FLAG, .in_text = false},
               {.name = "user_fields_mk", .title = "mk", .in_text = false, .group = "user_fields", .key = "mk"}});
  table.addRow({"10", "パンダ", year("1964-01-01"), 0.1F, 0.125, true, "x"});
  table.addRow({"2", "e\u0301toile", month("2002-04-01"), NOT_KNOWN, 1.0, false});
  table.addRow({"\x1B[2J\n\"", "M\xFCller, A", known_date{}, -0.00001, NOT_KNOWN, true, "\u202E"});
  table.notes = {"3 animals"};
  return table;
}

std::string shown(const Table& table, table_options options) {
  std::ostringstream out;
  const table_part part = chosenPart(table, options);
  options.format == OUTPUT_FORMAT::TEXT  ? writeText(out, table, part)
  : options.format == OUTPUT_FORMAT::CSV ? writeCsv(out, table, part)
                                         : writeJson(out, table, part);
  return out.str();
}

TEST(Table, TheCountSaysWhatIsLeftOut) {
  Table table({{"id", "ID"}, {.name = "age", .title = "Age", .kind = COLUMN_KIND::INTEGER}});
  table.one_row = "animal";
  table.many_rows = "animals";
  for (int age = 1; age <= 5; ++age) {
    table.addRow({std::to_string(age), age});
  }
  const std::pair<table_options, const char*> cases[] = {
      {{}, "\n5 animals\n"},
      {{.where = {"age>3"}}, "\n2 of 5 animals\n"},
      {{.limit = 2}, "\nfirst 2 of 5 animals\n"},
      {{.where = {"age>3"}, .limit = 2}, "\n2 of 5 animals\n"},
      {{.where = {"age>2"}, .limit = 2}, "\nfirst 2 of 3 animals that match; 5 in all\n"},
  };
  for (const auto& [options, count] : cases) {
    const std::string text = shown(table, options);
    EXPECT_TRUE(text.ends_with(count)) << text;
  }
}

TEST(Table, PeopleSeeAlignedColumnsAndNoControlCharacters) {
  EXPECT_EQ(shown(hostileTable(), {}),
            "            House                   Mean\n"
            "ID          name       Born      kinship    Share\n"
            "----------  ---------  --------  -------  -------\n"
            "10          パンダ     1964       0.1000   12.5 %\n"
            "2           e\u0301toile     Apr 2002        -  100.0 %\n"
            "\\x1b[2J\\n\"  Müller, A             0.0000        -\n"
            "\n"
            "Mean kinship  average kinship with the living animals\n"
            "\n"
            "3 animals\n");
}

TEST(Table, ScriptsGetWholeNumbersAndBytes) {
  EXPECT_EQ(shown(hostileTable(), {.format = OUTPUT_FORMAT::CSV}),
            "id,name,born,mk,share,alive,user_fields_mk\n"
            "10,パンダ,1964-01-01,0.1,0.125,true,x\n"
            "2,e\u0301toile,2002-04-01,,1,false,\n"
            "\"\x1B[2J\n\"\"\",\"M\xFCller, A\",,-1e-05,,true,\u202E\n");
  EXPECT_EQ(
      shown(hostileTable(), {.format = OUTPUT_FORMAT::JSON, .limit = 2}),
      "[\n"
      R"({"id":"10","name":"パンダ","born":"1964-01-01","mk":0.1,"share":0.125,"alive":true,"user_fields":{"mk":"x"}},)"
      "\n"
      "{\"id\":\"2\",\"name\":\"e\u0301toile\""
      R"(,"born":"2002-04-01","mk":null,"share":1.0,"alive":false,"user_fields":{"mk":null}})"
      "\n]\n");
  const std::string json = shown(hostileTable(), {.format = OUTPUT_FORMAT::JSON, .where = {"mk<0"}});
  EXPECT_NE(json.find(R"("id":"\u001b[2J\n\"","name":"Müller, A","born":null)"), std::string::npos) << json;
}

TEST(Table, DatesAreAsExactAsTheyAreKnown) {
  const qs_lib::day_number day = month("1981-07-01").day + 3;
  const struct {
    DATE_ACCURACY accuracy;
    std::uint64_t range;
    const char* text;
  } cases[] = {{DATE_ACCURACY::ACCURATE, 0, "1981-07-04"},     {DATE_ACCURACY::BY_WEEK, 0, "~1981-07-04"},
               {DATE_ACCURACY::BY_MONTH, 0, "Jul 1981"},       {DATE_ACCURACY::BY_YEAR, 0, "1981"},
               {DATE_ACCURACY::DATE_RANGE, 30, "~1981-07-04"}, {DATE_ACCURACY::DATE_RANGE, 31, "~Jul 1981"},
               {DATE_ACCURACY::DATE_RANGE, 400, "~1981"},      {DATE_ACCURACY::UNKNOWN, 0, "1981-07-04?"}};
  for (const auto& [accuracy, range, text] : cases) {
    EXPECT_EQ(cellText(known_date{day, accuracy, range}, {"", "", COLUMN_KIND::DATE}), text);
  }
}

TEST(Table, WideTextsAreWrappedInsideTheirColumnsAndNeverCut) {
  Table table({{"id", "ID"}, {"note", "Note"}, {.name = "n", .title = "N", .kind = COLUMN_KIND::INTEGER}});
  table.addRow({"1", "a long remark that has to be broken somewhere to fit", 3});
  table.addRow({"2", std::string(30, 'x')});
  std::ostringstream out;
  writeText(out, table, wholeTable(table, OUTPUT_FORMAT::TEXT), 30);
  EXPECT_EQ(out.str(),
            "ID  Note                     N\n"
            "--  -----------------------  -\n"
            "1   a long remark that has   3\n"
            "    to be broken somewhere\n"
            "    to fit\n"
            "2   xxxxxxxxxxxxxxxxxxxxxxx  -\n"
            "    xxxxxxx\n");
}

TEST(Table, ARecordIsShownALinePerColumnAndIsOneObject) {
  Table table({{"animals", "Animals"}, {.name = "male", .title = "Males", .group = "sexes", .key = "male"}});
  table.is_record = true;
  table.addRow({150, 71});
  EXPECT_EQ(shown(table, {}), "Animals  150\nMales    71\n");
  EXPECT_EQ(shown(table, {.format = OUTPUT_FORMAT::CSV}), "animals,male\n150,71\n");
  EXPECT_EQ(shown(table, {.format = OUTPUT_FORMAT::JSON}), "{\"animals\":150,\"sexes\":{\"male\":71}}\n");
}

struct selection {
  std::vector<std::string> sort;
  std::vector<std::string> where;
  const char* ids;
};

TEST(Table, RowsAreChosenAndSortedAsTheOptionsSay) {
  Table table({{"id", "ID"},
               {.name = "born", .title = "Born", .kind = COLUMN_KIND::DATE},
               {.name = "f", .title = "F", .kind = COLUMN_KIND::REAL},
               {"zoo, city", "Zoo, city"},
               {"a=b", "a=b"}});
  table.addRow({"10", year("1964-01-01"), 0.25, "Berlin", "x"});
  table.addRow({"9b", month("1990-05-01"), NOT_KNOWN, "berlin", "="});
  table.addRow({"9", known_date{qs_lib::msToDay(qs_lib::dateToJulian("1990-12-31"))}, 0.0, "", "x"});
  table.addRow({"A1", known_date{}, 0.125, "Oslo", "x=y"});
  const selection cases[] = {
      {{}, {}, "10 9b 9 A1"},
      {{"id"}, {}, "9 9b 10 A1"},
      {{"-born"}, {}, "9 9b 10 A1"},
      {{"f"}, {}, "9 A1 10 9b"},
      {{"-f"}, {}, "10 A1 9 9b"},
      {{"zoo, city,-id"}, {}, "10 9b A1 9"},
      {{"zoo, city", "-id"}, {}, "10 9b A1 9"},
      {{}, {"zoo, city=BERLIN"}, "10 9b"},
      {{}, {"zoo, city!=Berlin"}, "9 A1"},
      {{}, {"zoo, city="}, "9"},
      {{}, {"born=1990"}, "9b 9"},
      {{}, {"born>1990-05"}, "9"},
      {{}, {"born<=1990"}, "10 9b 9"},
      {{}, {"born="}, "A1"},
      {{}, {"f>0", "f<0.2"}, "A1"},
      {{}, {"f>=12.5%"}, "10 A1"},
      {{}, {"f!="}, "10 9 A1"},
      {{}, {"a=b=x=y"}, "A1"},
      {{}, {"a=b=="}, "9b"},
  };
  for (const selection& each : cases) {
    SCOPED_TRACE(testing::PrintToString(each.sort) + testing::PrintToString(each.where));
    std::string ids;
    for (const std::size_t row : chosenPart(table, {.sort = each.sort, .where = each.where}).rows) {
      ids += (ids.empty() ? "" : " ") + std::get<std::string>(table.cell(row, 0).get());
    }
    EXPECT_EQ(ids, each.ids);
  }
  EXPECT_EQ(chosenPart(table, {.columns = {"F,zoo, city", "ID"}, .limit = 1}).columns,
            (std::vector<std::size_t>{2, 3, 0}))
      << "a title that holds a comma is not split";
}

TEST(Table, UnknownColumnsAreRefusedWithThoseThatThereAre) {
  const Table table({{"id", "ID"}, {.name = "born", .title = "Born", .kind = COLUMN_KIND::DATE}});
  const table_options cases[] = {{.columns = {"bron"}}, {.sort = {"-bron"}}, {.where = {"bron=1990"}}};
  for (const table_options& options : cases) {
    try {
      chosenPart(table, options);
      ADD_FAILURE() << "it was taken";
    } catch (const UsageError& error) {
      EXPECT_NE(std::string(error.what())
                    .find("there is no column \"bron\"; did you mean \"born\"?\n"
                          "The columns are: id, born"),
                std::string::npos)
          << error.what();
    }
  }
  EXPECT_THROW(chosenPart(table, {.where = {"born"}}), UsageError);
  EXPECT_THROW(chosenPart(table, {.where = {"born=1990-13"}}), UsageError);
}

}  // namespace
}  // namespace spx::console
