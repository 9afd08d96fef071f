#include "console/tables/value_text.h"

#include <gtest/gtest.h>

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/tables/column_titles.h"
#include "console/tables/csv_table.h"
#include "console/tables/faults.h"

namespace spx::console {
namespace {

template <typename Value>
std::string nameOf(const std::optional<Value>& value) {
  return value ? getEnumName(*value) : "fault";
}

TEST(ValueText, DatesCarryTheirAccuracy) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"1976", "1976-01-01 by year"},
      {"1976-02", "1976-02-01 by month"},
      {"1976-02-29", "1976-02-29 accurate"},
      {"19760229", "1976-02-29 accurate"},
      {"", " unknown"},
      {"NA", " unknown"},
      {"Unknown", " unknown"},
      {"1977-02-29", "fault"},
      {"1976-13", "fault"},
      {"0", "fault"},
      {"76", "fault"},
      {"1976-02-29x", "fault"},
      {"29.02.1976", "1976-02-29 accurate"},
      {"~1976-02-29", "1976-02-29 by day"},
      {"~1976", "1976-01-01 by year"},
      {"1990s", "1995-01-01 date range"},
      {"04/05/1998", "fault"},
      {"0000-00-00", "fault"},
  };
  for (const auto& [text, expected] : cases) {
    SCOPED_TRACE(text);
    const auto date = parseDate(text);
    EXPECT_EQ(date ? qs_lib::julianToISO(qs_lib::dayToMs(date->day)) + " " + getEnumName(date->accuracy) : "fault",
              expected);
  }
}

TEST(ValueText, NamesAreTakenInAnyCaseAndWildcardsAreNot) {
  EXPECT_EQ(nameOf(parseSex("Male")), "male");
  EXPECT_EQ(nameOf(parseSex("2")), "female");
  EXPECT_EQ(nameOf(parseSex("H")), "hermaphrodite");
  EXPECT_EQ(nameOf(parseSex("na")), "unknown");
  EXPECT_EQ(nameOf(parseSex("0")), "unknown");
  EXPECT_EQ(nameOf(parseSex("3")), "fault");
  EXPECT_EQ(nameOf(parseSex("all")), "fault");
  EXPECT_EQ(nameOf(parseMoveType("Lost_to follow-up")), "lost-to-follow-up");
  EXPECT_EQ(nameOf(parseMoveType("all")), "fault");
  EXPECT_EQ(nameOf(parseMoveType("")), "fault");
  EXPECT_EQ(nameOf(parseOrigin("WILD")), "wild-born");
  EXPECT_EQ(nameOf(parseOrigin("captive born")), "captive-born");
  EXPECT_EQ(nameOf(parseRearing(".")), "unknown");
  EXPECT_EQ(nameOf(parseRearing("none")), "none");
  EXPECT_EQ(nameOf(parseAccuracy("date range")), "date range");
  EXPECT_EQ(nameOf(parseAccuracy("all dates")), "fault");
}

TEST(ValueText, NumbersAreWhole) {
  for (const char* text : {"1x", "1,5", "1e999", "inf", "+-1", "0x10"}) {
    EXPECT_FALSE(parseReal<double>(text)) << text;
  }
  EXPECT_FALSE(parseReal<float>("1e300"));
  EXPECT_TRUE(std::isnan(*parseReal<float>("NaN")));
  EXPECT_EQ(parseReal<double>("-0.25"), -0.25);
  EXPECT_EQ(parseDays("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
  for (const char* text : {"18446744073709551616", "-1", "1.5"}) {
    EXPECT_FALSE(parseDays(text));
  }
}

TEST(ValueText, DemeIdentifiersAreStrict) {
  for (const char* text : {"3", "3.1.12", "003.001", "255.255", "3.1.0.0.0.0.0.0"}) {
    EXPECT_TRUE(isDemeText(text)) << text;
    EXPECT_TRUE(parseDeme(text)) << text;
  }
  // The last two are too deep to survive packing.
  for (const char* text :
       {"0", "3..1", ".3", "3.", "3.256", "3.0.1", "1.2.3.4.5.6.7.8.9", "1.2.3.4.5.6.7.8", "200.1.1.1.1.1.1.1"}) {
    EXPECT_TRUE(isDemeText(text)) << text;
    EXPECT_FALSE(parseDeme(text)) << text;
  }
  for (const char* text : {"", "Zoo 3", "256", "1034", "-3", "3.x"}) {
    EXPECT_FALSE(isDemeText(text)) << text;
  }
}

TEST(ValueText, TypeOfAFieldFitsAllItsValues) {
  using qs_lib::FIELD_TYPE;
  const struct {
    std::vector<const char*> values;
    FIELD_TYPE type;
  } cases[] = {
      {{}, FIELD_TYPE::TEXT},
      {{"", "NA", "."}, FIELD_TYPE::TEXT},
      {{"1", "", "-20", "0"}, FIELD_TYPE::INTEGER},
      {{"1", "2.5", "1e3"}, FIELD_TYPE::REAL},
      {{"0.5", "-0.5"}, FIELD_TYPE::REAL},
      {{"2.5", "x", "1"}, FIELD_TYPE::TEXT},
      {{"17", "0017"}, FIELD_TYPE::TEXT},
  };
  for (const auto& [values, type] : cases) {
    TypeGuess guess;
    for (const char* value : values) {
      guess.add(value);
    }
    EXPECT_EQ(guess.type(), type) << (values.empty() ? "none" : values.back());
  }
}

constexpr table_field FIELDS[] = {{"id", {"stud_id"}, true}, {"birth_date", {"yob"}}, {"f"}};

/// The titles of id, birth_date and f, and the number of other columns; or the text of the exception.
std::string claims(const std::vector<std::string>& titles, const std::vector<std::string>& choices = {}) {
  try {
    title_choices chosen;
    for (const std::string& choice : choices) {
      chosen.list.push_back(parseTitleChoice(choice));
    }
    const ColumnTitles columns("t.csv", titles, FIELDS, chosen);
    std::string text;
    for (std::size_t field = 0; field < std::size(FIELDS); ++field) {
      const std::size_t column = columns.column(field);
      text += (column == ColumnTitles::NONE ? "-" : titles[column]) + " ";
    }
    return text + std::to_string(columns.others().size());
  } catch (const UsageError& error) {
    return std::string("usage: ") + error.what();
  } catch (const TableError& error) {
    return std::string("table: ") + error.what();
  }
}

TEST(ColumnTitles, FieldsAreFoundByAnyOfTheirTitles) {
  EXPECT_EQ(claims({"Birth Date", "x", "ID"}), "ID Birth Date - 1");
  EXPECT_EQ(claims({"F", "YOB", "Stud-ID"}), "Stud-ID YOB F 0");
  EXPECT_EQ(claims({"name", "x"}),
            "table: there is no column \"id\"; the columns are \"name\", \"x\". Choose one of them, for example --map "
            "id=\"TITLE\"");
  EXPECT_EQ(claims({"Stdu-ID", "x"}),
            "table: there is no column \"id\"; the columns are \"Stdu-ID\", \"x\". Choose one of them, for example "
            "--map id=\"Stdu-ID\"");
  EXPECT_EQ(claims({"STUD ID", "Y.O.B."}), "STUD ID Y.O.B. - 0");
  EXPECT_EQ(claims({"id", "", "", "x", "x"}), "id - - 4");
  EXPECT_EQ(claims({"id", "x", "stud_id"}),
            "usage: t.csv: the columns \"id\" and \"stud_id\" both match the field id; choose one "
            "with --map id=TITLE");
}

TEST(ColumnTitles, AChosenTitleWins) {
  EXPECT_EQ(claims({"id", "x", "stud_id"}, {"ID=x"}), "x - - 2");
  EXPECT_EQ(claims({"no", "a=b"}, {"id=a=b"}), "a=b - - 1");
  EXPECT_EQ(claims({"x", "X"}, {"id=X"}), "X - - 1");
  EXPECT_EQ(claims({"id"}, {"id=y"}), "usage: --map: t.csv has no column \"y\"; its columns are \"id\"");
  EXPECT_EQ(claims({"id"}, {"age=id"}), "usage: --map: no field \"age\"; there are id, birth_date, f");
  EXPECT_EQ(claims({"id", "x"}, {"id=x", "f=x"}), "usage: --map: the column \"x\" is given to two fields");
  EXPECT_NE(claims({"id", "x"}, {"id=x", "id=id"}).find("both match"), std::string::npos);
  for (const char* choice : {"", "=", "id", "id=", "=x"}) {
    EXPECT_NE(claims({"id"}, {choice}).find("is not FIELD=TITLE"), std::string::npos) << choice;
  }
}

TEST(Faults, ShowsTwentyAndCountsTheRest) {
  Faults faults;
  for (std::size_t line = 2; line < 25; ++line) {
    faults.add({"t.csv", line, "sex", "7", "bad"});
  }
  EXPECT_EQ(faults.text().substr(0, 41), "t.csv:2: column \"sex\", animal \"7\": bad\nt.");
  EXPECT_NE(faults.text().find("t.csv:21: "), std::string::npos);
  EXPECT_EQ(faults.text().find("t.csv:22: "), std::string::npos);
  EXPECT_NE(faults.text().find("\n... and 3 more\n"), std::string::npos);
  EXPECT_EQ(quotedText("a\tb\x1B"), "\"a\\tb\\x1b\"");
  EXPECT_EQ(quotedText(std::string(59, 'x') + "\u30D1y"), "\"" + std::string(59, 'x') + "...\"") << "two columns wide";
}

}  // namespace
}  // namespace spx::console
