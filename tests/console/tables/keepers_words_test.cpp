// Dates, sexes and letters as keepers and their programs write them.
#include <cstdio>

#include <gtest/gtest.h>

#include "spx/support/julian_date.h"

#include "console/tables/date_reading.h"
#include "console/tables/text_encoding.h"
#include "console/tables/value_text.h"
#include "tests/support/temporary_home.h"

namespace spx::console {
namespace {

TEST(KeepersWords, MonthsHaveNamesInFourLanguages) {
  const std::vector<std::string> names[] = {
      {"January", "Jan", "Januar", "J\xC3\xA4nner", "janvier", "janv.", "enero", "ene"},
      {"February", "Feb.", "Februar", "Feber", "f\xC3\xA9vrier", "f\xC3\xA9v.", "febrero"},
      {"March", "MAR", "M\xC3\xA4rz", "Maerz", "Mrz", "mars", "marzo"},
      {"April", "Apr", "avril", "avr.", "abril", "abr"},
      {"May", "Mai", "mai", "mayo"},
      {"June", "Jun", "Juni", "juin", "junio"},
      {"July", "Jul", "Juli", "juillet", "juil.", "julio"},
      {"August", "Aug", "ao\xC3\xBBt", "agosto", "ago"},
      {"September", "Sep", "Sept.", "septembre", "septiembre", "setiembre"},
      {"October", "Oct", "Oktober", "Okt.", "octobre", "octubre"},
      {"November", "Nov", "novembre", "noviembre"},
      {"December", "Dec", "Dezember", "Dez",
       "d\xC3\xA9"
       "cembre",
       "d\xC3\xA9"
       "c.",
       "diciembre", "dic"},
  };
  for (std::size_t month = 0; month < std::size(names); ++month) {
    const std::string expected = std::string("1998-") + (month < 9 ? "0" : "") + std::to_string(month + 1);
    for (const std::string& name : names[month]) {
      EXPECT_EQ(readDate(name + " 1998", DATE_ORDER::UNKNOWN).text, expected) << name;
      EXPECT_EQ(readDate("9. " + name + " 1998", DATE_ORDER::MONTH_FIRST).text, expected + "-09") << name;
    }
  }
}

// Whatever the form, each day comes back as that day.
TEST(KeepersWords, EveryDayIsReadInEveryForm) {
  constexpr const char* MONTHS[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const qs_lib::day_number first = qs_lib::msToDay(qs_lib::dateToJulian("1899-12-30"));
  const qs_lib::day_number last = qs_lib::msToDay(qs_lib::dateToJulian("2040-12-31"));
  for (qs_lib::day_number day = qs_lib::msToDay(qs_lib::dateToJulian("1930-01-01")); day <= last; day += 17) {
    const std::string iso = qs_lib::julianToISO(qs_lib::dayToMs(day)).substr(0, 10);
    const std::string parts[] = {iso.substr(0, 4), iso.substr(5, 2), iso.substr(8, 2)};
    const std::string name = MONTHS[std::stoul(parts[1]) - 1];
    for (const std::string sign : {".", "/", "-"}) {
      EXPECT_EQ(readDate(parts[2] + sign + parts[1] + sign + parts[0], DATE_ORDER::DAY_FIRST).text, iso);
      EXPECT_EQ(readDate(parts[1] + sign + parts[2] + sign + parts[0], DATE_ORDER::MONTH_FIRST).text, iso);
    }
    for (const std::string& text : {parts[0] + "/" + parts[1] + "/" + parts[2], parts[2] + " " + name + " " + parts[0],
                                    name + " " + parts[2] + ", " + parts[0], parts[0] + parts[1] + parts[2],
                                    std::to_string(day - first), iso + " 00:00:00"}) {
      const auto read = parseDate(readDate(text, DATE_ORDER::UNKNOWN).text);
      ASSERT_TRUE(read) << text;
      EXPECT_EQ(read->day, day) << text;
      EXPECT_EQ(read->accuracy, DATE_ACCURACY::ACCURATE) << text;
    }
  }
}

TEST(KeepersWords, SexesHaveManyNames) {
  const struct {
    SEX sex;
    std::vector<const char*> texts;
  } cases[] = {
      {SEX::MALE,
       {"m", "M", "male", "1", "1.0", "1,0", "1.0.0", "\xE2\x99\x82", "m\xC3\xA4nnlich", "Maennchen", "m\xC3\xA2le",
        "masculin", "MACHO"}},
      {SEX::FEMALE,
       {"f", "Female", "2", "0.1", "0,1", "0.1.0", "\xE2\x99\x80", "w", "weiblich", "Weibchen", "fem.", "femelle",
        "f\xC3\xA9minin", "hembra"}},
      {SEX::UNKNOWN,
       {"", "u", "0", "?", "-", "0.0.1", "NA", "unbekannt", "unbest.", "inconnu", "ind\xC3\xA9t.", "desconocido",
        "unsexed"}},
      {SEX::HERMAPHRODITE, {"h", "Hermaphrodite"}},
  };
  for (const auto& [sex, texts] : cases) {
    for (const char* text : texts) {
      EXPECT_EQ(parseSex(text), sex) << text;
    }
  }
  for (const char* text : {"1.1", "0.2", "3", "mw", "m f", "males", "x", "Wildfang", "2.0"}) {
    EXPECT_FALSE(parseSex(text)) << text;
  }
}

class TextReaderTest : public TemporaryHome {
 protected:
  std::string readAll(const std::string& bytes, const std::string& encoding = "", std::size_t piece = 7) {
    writeContent(at("t"), bytes);
    told.clear();
    TextReader reader(at("t"), {encoding, [&](const std::string& remark) { told += remark; }});
    std::string text;
    std::string buffer(piece, '\0');
    for (std::size_t size = reader.read(buffer.data(), piece); size > 0; size = reader.read(buffer.data(), piece)) {
      text.append(buffer, 0, size);
    }
    return text;
  }

  /// Two bytes a character; only for characters up to U+00FF.
  static std::string utf16(const std::string& latin1, bool big_end_first) {
    std::string bytes;
    for (const char letter : latin1) {
      bytes += big_end_first ? std::string{'\0', letter} : std::string{letter, '\0'};
    }
    return bytes;
  }

  std::string told;
};

TEST_F(TextReaderTest, TheSameTextComesFromEveryEncoding) {
  const std::string latin1 = "id;Ort\n1;Z\xFCrich\n2;K\xF6ln \xDF \xE9\n";
  const std::string utf8 = "id;Ort\n1;Z\xC3\xBCrich\n2;K\xC3\xB6ln \xC3\x9F \xC3\xA9\n";
  const struct {
    std::string bytes;
    const char* encoding;
    const char* tells;
  } cases[] = {
      {utf8, "", ""},
      {latin1, "", "Windows-1252"},
      {latin1, "latin1", ""},
      {utf16(latin1, false), "", "UTF-16LE"},
      {utf16(latin1, true), "", "UTF-16BE"},
      {"\xFF\xFE" + utf16(latin1, false), "", "UTF-16LE"},
      {"\xFE\xFF" + utf16(latin1, true), "", "UTF-16BE"},
      {utf16(latin1, true), "UTF-16BE", ""},
      {"id;Ort\n1;Z\x81rich\n2;K\x94ln \xE1 \x82\n", "cp850", ""},
  };
  for (const auto& [bytes, encoding, tells] : cases) {
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{1000}}) {
      SCOPED_TRACE(std::string(encoding) + tells);
      EXPECT_EQ(readAll(bytes, encoding, piece), utf8);
      EXPECT_EQ(told.find(tells) != std::string::npos, true) << told;
      EXPECT_EQ(told.empty(), *tells == '\0');
    }
  }
}

TEST_F(TextReaderTest, LettersAreWholeWhereThePiecesEnd) {
  std::string latin1(200000, '\xE9');
  std::string utf8;
  for (std::size_t letter = 0; letter < latin1.size(); ++letter) {
    utf8 += "\xC3\xA9";
  }
  EXPECT_EQ(readAll(latin1, "", 65536), utf8);
  EXPECT_EQ(readAll("x" + utf16(latin1, true).substr(1), "UTF-16BE", 4099).size(), utf8.size() + 1);
  EXPECT_EQ(readAll(utf8.substr(1), "", 65536).size(), utf8.size() - 1) << "bytes of UTF-8 come as they are";
  EXPECT_EQ(readAll("a\x81z", "ascii"), "a\xEF\xBF\xBDz");
  EXPECT_EQ(readAll(""), "");
}

}  // namespace
}  // namespace spx::console
