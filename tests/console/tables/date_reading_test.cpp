#include "console/tables/date_reading.h"

#include <gtest/gtest.h>

#include "console/tables/folded_text.h"
#include "console/tables/number_format.h"

namespace spx::console {
namespace {

constexpr DATE_ORDER NO_ORDER = DATE_ORDER::UNKNOWN;

TEST(DateReading, EveryFormBecomesOneThatParsesAlone) {
  const struct {
    const char* text;
    DATE_ORDER order;
    DATE_FORM form;
    const char* expected;
  } cases[] = {
      {"1998-07-12", NO_ORDER, DATE_FORM::PLAIN, "1998-07-12"},
      {"", NO_ORDER, DATE_FORM::PLAIN, ""},
      {"25/12/1998", NO_ORDER, DATE_FORM::DAY_FIRST, "1998-12-25"},
      {"12-25-1998", NO_ORDER, DATE_FORM::MONTH_FIRST, "1998-12-25"},
      {"4.5.1998", DATE_ORDER::DAY_FIRST, DATE_FORM::DAY_FIRST, "1998-05-04"},
      {"4.5.1998", DATE_ORDER::MONTH_FIRST, DATE_FORM::MONTH_FIRST, "1998-04-05"},
      {"5/5/1998", NO_ORDER, DATE_FORM::DAY_FIRST, "1998-05-05"},
      {"29.2.1999", NO_ORDER, DATE_FORM::NOT_A_DATE, "29.2.1999"},
      {"25/12/1998", DATE_ORDER::MONTH_FIRST, DATE_FORM::NOT_A_DATE, "25/12/1998"},
      {"04/05/1998", NO_ORDER, DATE_FORM::AMBIGUOUS, "04/05/1998"},
      {"4/5/1998 00:00", DATE_ORDER::DAY_FIRST, DATE_FORM::DAY_FIRST, "1998-05-04"},
      {"1998/7/12", NO_ORDER, DATE_FORM::YEAR_FIRST, "1998-07-12"},
      {"07/1998", NO_ORDER, DATE_FORM::MONTH_YEAR, "1998-07"},
      {"1998-07-00", NO_ORDER, DATE_FORM::PARTLY_ZERO, "1998-07"},
      {"1998-00-00", NO_ORDER, DATE_FORM::PARTLY_ZERO, "1998"},
      {"00.07.1998", NO_ORDER, DATE_FORM::PARTLY_ZERO, "1998-07"},
      {"1998-00-12", NO_ORDER, DATE_FORM::NOT_A_DATE, "1998-00-12"},
      {"0000-00-00", NO_ORDER, DATE_FORM::YEAR_ZERO, "0000-00-00"},
      {"12/05/98", NO_ORDER, DATE_FORM::SHORT_YEAR, "12/05/98"},
      {"~1990", NO_ORDER, DATE_FORM::ROUGH, "~1990"},
      {"ca. 1998", NO_ORDER, DATE_FORM::ROUGH, "~1998"},
      {"c1998?", NO_ORDER, DATE_FORM::ROUGH, "~1998"},
      {"about May 1998", NO_ORDER, DATE_FORM::ROUGH, "~1998-05"},
      {"1990s", NO_ORDER, DATE_FORM::DECADE, "1990s"},
      {"1995s", NO_ORDER, DATE_FORM::NOT_A_DATE, "1995s"},
      {"35927", NO_ORDER, DATE_FORM::SERIAL, "1998-05-12"},
      {"99999", NO_ORDER, DATE_FORM::NOT_A_DATE, "99999"},
      {"?", NO_ORDER, DATE_FORM::UNKNOWN, ""},
      {"Unbekannt", NO_ORDER, DATE_FORM::UNKNOWN, ""},
      {"May 1990", NO_ORDER, DATE_FORM::NAMED_MONTH, "1990-05"},
      {"12-May-1990", NO_ORDER, DATE_FORM::NAMED_MONTH, "1990-05-12"},
      {"May 12th, 1990", NO_ORDER, DATE_FORM::NAMED_MONTH, "1990-05-12"},
      {"12. M\xC3\xA4rz 1990", NO_ORDER, DATE_FORM::NAMED_MONTH, "1990-03-12"},
      {"1er ao\xC3\xBBt 1990", NO_ORDER, DATE_FORM::NAMED_MONTH, "1990-08-01"},
      {"12 de enero de 1990", NO_ORDER, DATE_FORM::NAMED_MONTH, "1990-01-12"},
      {"jui 1990", NO_ORDER, DATE_FORM::NOT_A_DATE, "jui 1990"},
      {"31 Feb 1990", NO_ORDER, DATE_FORM::NOT_A_DATE, "31 Feb 1990"},
      {"wild 1990", NO_ORDER, DATE_FORM::NOT_A_DATE, "wild 1990"},
  };
  for (const auto& [text, order, form, expected] : cases) {
    SCOPED_TRACE(text);
    const date_reading reading = readDate(text, order);
    EXPECT_EQ(reading.form, form);
    EXPECT_EQ(reading.text, expected);
    if (form < DATE_FORM::AMBIGUOUS) {
      EXPECT_EQ(readDate(reading.text, NO_ORDER).text, expected);
    }
  }
}

TEST(DateReading, OnlyImpossibleMonthsProveAnOrder) {
  EXPECT_EQ(provenOrder("25/12/1998"), DATE_ORDER::DAY_FIRST);
  EXPECT_EQ(provenOrder("12/25/1998"), DATE_ORDER::MONTH_FIRST);
  for (const char* text : {"04/05/1998", "5/5/1998", "1998-12-25", "25/13/1998", "25 Dec 1998", "30/02/1998", ""}) {
    EXPECT_EQ(provenOrder(text), NO_ORDER) << text;
  }
}

TEST(DateReading, FaultsSayWhatToWrite) {
  EXPECT_EQ(dateFault("12/05/98"), "\"12/05/98\" has a two-digit year; write all four digits");
  EXPECT_NE(dateFault("0000-01-01").find("there is no year 0"), std::string::npos);
  EXPECT_NE(dateFault("04/05/1998").find("day first or month first"), std::string::npos);
  EXPECT_NE(dateFault("x").find("is not a date"), std::string::npos);
}

TEST(FoldedText, AccentsCaseAndPunctuationDoNotMatter) {
  EXPECT_EQ(foldedText("P\xC3\xA8re M\xC3\x84NNCHEN Gr\xC3\xB6\xC3\x9F"
                       "e"),
            "pere mannchen grosse");
  EXPECT_EQ(titleWord(" Stud-book No. (ID)"), "studbooknoid");
  EXPECT_EQ(titleWord("SB#"), "sb#");
  EXPECT_EQ(foldedText("\xC3"), "\xC3");
}

TEST(NumberFormat, ShowsWhatTheSpreadsheetShows) {
  const struct {
    const char* code;
    double number;
    const char* expected;
  } cases[] = {
      {"dd/mm/yyyy", 35927, "1998-05-12"},
      {"d.m.yy h:mm", 35927.5, "1998-05-12T12:00:00"},
      {"yyyy-mm-dd", 1, "1900-01-01"},
      {"yyyy-mm-dd", 59, "1900-02-28"},
      {"yyyy-mm-dd", 61, "1900-03-01"},
      {"[$-407]mmm yyyy", 35916, "1998-05"},
      {"mmm yy", 35917, "1998-05-02"},
      {"yyyy", 35796, "1998"},
      {"\"day\" 0", 7, "7"},
      {"mm:ss", 35927, "35927"},
      {"General", 35927, "35927"},
      {"0000", 42, "0042"},
      {"0.00", 0.1, "0.1"},
      {"@", 1e6, "1000000"},
      {"[Red]0;yyyy", 35927, "35927"},
      {"yyyy", -1, "-1"},
  };
  for (const auto& [code, number, expected] : cases) {
    SCOPED_TRACE(code);
    EXPECT_EQ(numberText(number, readNumberFormat(code), false), expected);
  }
  EXPECT_EQ(numberText(35927 - 1462, builtInNumberFormat(14), true), "1998-05-12");
}

}  // namespace
}  // namespace spx::console
