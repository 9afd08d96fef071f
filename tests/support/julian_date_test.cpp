#include <random>

#include "spx/support/tokenizer.h"

#include "tests/support/temporary_home.h"

namespace qs_lib {
class JulianDate : public TemporaryHome {};

TEST_F(JulianDate, TextBecomesTheDayItNamesOrNone) {
  constexpr std::tuple<const char*, std::uint64_t, unsigned> CASES[] = {
      {"1800-01-01", 2378497, 0},
      {"1970-01-01", 2440588, 0},
      {"2000", 2451545, 0},
      {"2000-02", 2451576, 0},
      {"20000301", 2451605, 0},
      {"9999-12-31", 5373484, 0},
      {"2000-01-01T23:59:59", 2451545, 86399},
      {"20000101 06:30", 2451545, 23400},
      {"2000-01-01 00:00:01.000", 2451545, 1},
  };
  for (const auto& [text, day, second] : CASES) {
    EXPECT_EQ(dateToJulian(std::string(text)), day * MS_PER_DAY + second * 1000ull) << text;
  }
  std::vector<std::string> no_days =
      Tokenizer(
          ";unknown;1900-02-29;2000-13-01;2000-00-10;2000-04-31;2000-01-00;2000-01-01T24:00;"
          "2000-01-01T10:60;2000-01-01T10:00:00.;2000-01-01T;2000-01T10:00;2000-1-1;2000-01-01 ;"
          " 2000-01-01;200001;2000-0101;200001-01;200;20000;-200",
          ";")
          .tokens();
  no_days.push_back(std::string(1 << 20, '1'));
  no_days.push_back(std::string("2000\0", 5));
  for (const std::string& text : no_days) {
    EXPECT_EQ(dateToJulian(text), 0u) << text.substr(0, 30);
  }
}

TEST_F(JulianDate, EveryDayFollowsTheOneBefore) {
  civil_date expected{1581, 12, 31};
  const day_number first = *dayFromCivil(expected);
  for (day_number day = first; day < first + 150000; ++day) {
    const civil_date date = civilFromDay(day);
    ASSERT_EQ(std::tie(date.year, date.month, date.day), std::tie(expected.year, expected.month, expected.day));
    ASSERT_EQ(dayFromCivil(date), day);
    ASSERT_EQ(dateToJulian(julianToISO(dayToMs(day))), dayToMs(day));
    if (++expected.day > daysInMonth(expected.year, expected.month)) {
      expected.day = 1;
      expected.year += expected.month == 12 ? 1 : 0;
      expected.month = expected.month % 12 + 1;
    }
  }
}

TEST_F(JulianDate, ExtremeDaysKeepTheirYear) {
  EXPECT_EQ(julianToISO(dayToMs(1)), "-4713-11-25");
  EXPECT_EQ(julianToISO(dayToMs(4294967295u)), "11754508-12-13");
  EXPECT_EQ(dayFromCivil({11754508, 12, 13}), 4294967295u);
  for (const civil_date& none : {civil_date{11754508, 12, 14}, civil_date{-4713, 11, 23}, civil_date{INT64_MAX, 1, 1},
                                 civil_date{INT64_MIN, 1, 1}}) {
    EXPECT_FALSE(dayFromCivil(none)) << none.year;
  }
}

TEST_F(JulianDate, RecordsJoinToTheMomentTheyCameFrom) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 1000; ++i) {
    const julian_ms moment = dayToMs(1721426) + random() % (dayToMs(20000000));
    ASSERT_EQ(dateToJulian(julianToDate(moment)), moment);
  }
  date_time_record record = julianToDate(dayToMs(2451604));
  record.year = 1900;
  EXPECT_EQ(dateToJulian(record), 0u) << "29 February 1900";
  resetDateTime(record);
  EXPECT_EQ(dateToJulian(record), 0u);
  EXPECT_EQ(julianToDate(0).month, 0);
  getToday(record);
  EXPECT_EQ(julianToISO(dateToJulian(record)), getTodayAsISO());
}

TEST_F(JulianDate, DisplayFollowsFormatAndSwitch) {
  const julian_ms morning = dateToJulian(std::string("2009-03-04 05:06:07"));
  EXPECT_EQ(julianToISO(morning), "2009-03-04");
  EXPECT_EQ(julianToYYYYMMDD(morning), "20090304");
  EXPECT_EQ(formatJulianDate(morning), "2009-03-04");
  setUseTime(true);
  setDateTimeFormat({DATE_ORDER::DAY_MONTH_YEAR, '/'});
  EXPECT_EQ(julianToISO(morning), "2009-03-04T05:06:07");
  EXPECT_EQ(formatJulianDate(morning), "04/03/2009 05:06:07");
  EXPECT_EQ(formatJulianDate(dayToMs(msToDay(morning)), {DATE_ORDER::MONTH_DAY_YEAR, '.'}), "03.04.2009");
  EXPECT_EQ(getTodayAsISO().size(), std::string("2009-03-04T05:06:07").size());
  for (const julian_ms unknown : {julian_ms{0}, MS_PER_DAY - 1}) {
    EXPECT_EQ(julianToISO(unknown) + julianToYYYYMMDD(unknown) + formatJulianDate(unknown), "");
  }
  EXPECT_EQ(getMonthName(1, false) + getMonthName(9, true), "JanSeptember");
  EXPECT_EQ(getMonthName(0, true) + getMonthName(13, false), "");
}
}  // namespace qs_lib
