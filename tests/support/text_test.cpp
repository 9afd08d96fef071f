#include "spx/support/text.h"

#include <cmath>
#include <limits>
#include <locale.h>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "spx/support/data_range.h"
#include "spx/support/number_text.h"
#include "spx/support/random.h"
#include "spx/support/text_hash.h"
#include "spx/support/tokenizer.h"

namespace qs_lib {
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

/// The expected text: that of a stream, except for negative NaN.
std::string streamed(double value, int decimals) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  if (decimals >= 0) {
    stream << std::fixed;
    stream.precision(decimals);
  }
  stream << value;
  return stream.str();
}

TEST(NumberText, RealsAreWrittenAsAStreamWritesThem) {
  std::mt19937_64 random(7);
  std::vector<double> values = {0.0,
                                -0.0,
                                0.5,
                                2.5,
                                0.125,
                                1e-7,
                                -1e-7,
                                999999.5,
                                1e15,
                                1e6,
                                123456,
                                1e-5,
                                0.0001,
                                INFINITE,
                                -INFINITE,
                                5e-324,
                                1.7976931348623157e308};
  for (int i = 0; i < 2000; ++i) {
    values.push_back(std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 90) - 90));
  }
  for (const double value : values) {
    for (const int decimals : {0, 1, 5, 60}) {
      ASSERT_EQ(realToString(value, decimals), streamed(value, decimals));
    }
    ASSERT_EQ(defaultReal(value), streamed(value, -1));
  }
  EXPECT_EQ(realToString(0.5f, 2), "0.50");
  EXPECT_EQ(realToString(0.1f, 9), "0.100000001") << "a float keeps its own value";
  EXPECT_EQ(realToString(1.0, -1), "1.000000");
  EXPECT_EQ(realToString(-0.5, 1200), "-0.5" + std::string(1199, '0'));
  for (const double nan : {NOT_A_NUMBER, -NOT_A_NUMBER}) {
    EXPECT_EQ(realToString(nan, 2) + defaultReal(nan), "nannan");
  }
}

TEST(NumberText, Percentages) {
  EXPECT_EQ(percent<std::uint64_t>(1, 3, 2), "33.33%");
  EXPECT_EQ(percent<std::uint64_t>(5, 5, 0), "100%");
  EXPECT_EQ(percent<std::uint64_t>(5, 0, 1), "n/a");
  EXPECT_EQ(percentString(NOT_A_NUMBER, 2, 1), "nan%");
}

TEST(StringText, RealReadsTheLeadingNumber) {
  EXPECT_EQ(String("12.50").real(), 12.5);
  EXPECT_EQ(String(" -3 animals").real(), -3);
  for (const char* text : {"", "abc", "-", " ", ",5"}) {
    EXPECT_TRUE(std::isnan(String(text).real())) << text;
  }
  EXPECT_THROW(String("1e999").real(), std::out_of_range);
  EXPECT_THROW(String(std::string(1 << 20, '9')).real(), std::out_of_range);
}

TEST(StringText, TrimReplaceAndTruth) {
  EXPECT_EQ(allTrim(" \t\r\n\v\fa b\t "), "a b");
  EXPECT_EQ(allTrim(" \n "), "");
  EXPECT_EQ(replaceChar("a b c", ' ', '_') + replicateChar('=', 3), "a_b_c===");
  for (const char* text : {"true", "TRUE", "t", "Yes", "y", "1", " on\n"}) {
    EXPECT_TRUE(stringToBool(text)) << text;
  }
  for (const char* text : {"false", "0", "", "2", "truely", "tr", "no", "11"}) {
    EXPECT_FALSE(stringToBool(text)) << text;
  }
  const std::map<std::string, int, map_key<std::string>> sorted = {{"9", 4}, {"a", 6}, {"10", 3}, {"\xC3", 7},
                                                                   {"A", 5}, {"1", 2}, {"", 1}};
  int expected = 0;
  for (const auto& [key, place] : sorted) {
    EXPECT_EQ(place, ++expected) << key;
  }
}

TEST(DataRangeText, BracketsAdmitTheirBound) {
  const DataRange<std::uint32_t> range{1, 5};
  constexpr std::pair<const char*, const char*> CASES[] = {
      {"()", "234"}, {"(]", "2345"}, {"[)", "1234"}, {"[]", "12345"}, {"{}", ""},
      {"", ""},      {"(", ""},      {"[}", ""},     {"[]]", ""},     {"][", ""}};
  for (const auto& [bracket, inside] : CASES) {
    std::string found;
    for (std::uint32_t value = 0; value <= 6; ++value) {
      found += range.isInRange(value, bracket) ? std::to_string(value) : "";
    }
    EXPECT_EQ(found, inside) << bracket;
  }
  EXPECT_FALSE((DataRange<double>{NOT_A_NUMBER, 5}.isInRange(1, "[]")));
}

TEST(TokenizerText, EmptyTokensStayButTheLast) {
  constexpr std::pair<const char*, const char*> CASES[] = {
      {"", ""}, {"a", "<a>"}, {"a|b;c", "<a><b><c>"}, {"|a||b|", "<><a><><b>"}, {"|", "<>"}};
  for (const auto& [text, expected] : CASES) {
    std::string tokens;
    for (const std::string& token : Tokenizer(text, "|;").tokens()) {
      tokens += "<" + token + ">";
    }
    EXPECT_EQ(tokens, expected) << text;
  }
  Tokenizer tokenizer("a b", "");
  EXPECT_EQ(tokenizer.getToken(0) + tokenizer.getToken(1), "a b");
  tokenizer.split(std::string(1 << 20, ','), ",");
  EXPECT_EQ(tokenizer.size(), std::size_t{1} << 20);
  tokenizer.split("a token of many letters.;b", ";");
  tokenizer.split(tokenizer.tokens()[0], ".");
  EXPECT_EQ(tokenizer.getToken(0), "a token of many letters") << "a token is split in its turn";
}

TEST(RandomText, SequenceBelongsToTheSeedAndStaysBelowOne) {
  RandomSource source;
  std::mt19937 engine(99);
  source.setSeed(99);
  const double lower = engine();
  const double expected = 5.421010862427522e-20 * (lower + engine() * 4294967296.0);
  EXPECT_EQ(source.uniform(), expected);
  for (int i = 0; i < 100000; ++i) {
    const double number = source.uniform();
    ASSERT_TRUE(number >= 0) << number;
    ASSERT_TRUE(number < 1) << number;
  }
}

// Texts chosen to collide in one slot of a table are spread over many slots with another seed.
TEST(TextHash, CollidingTextsCannotBeChosenWithoutTheSeed) {
  constexpr std::uint64_t SLOTS = 256;
  const hash_seed known = {0x9E3779B97F4A7C15, 0xD1B54A32D192ED03};
  for (const std::size_t length : {7U, 15U, 33U}) {
    std::set<std::uint64_t> slots;
    std::size_t chosen = 0;
    for (int number = 0; chosen < 64; ++number) {
      std::string text = std::to_string(number);
      text.insert(0, length - text.size(), 'a');
      if (hashText(text, known) % SLOTS == 7) {
        ++chosen;
        slots.insert(hashText(text, processSeed()) % SLOTS);
      }
    }
    EXPECT_GT(slots.size(), 30U) << length;
  }
}
}  // namespace qs_lib
