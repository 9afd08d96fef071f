#include "spx/core/deme_id.h"

#include <stdexcept>
#include <tuple>

#include <gtest/gtest.h>

namespace spx {
namespace {

struct form_case {
  const char* text;      ///< as a studbook writes it
  const char* full;      ///< the text that text() returns
  std::uint64_t packed;  ///< the bits
  int level;
  const char* unpacked;  ///< what the packed number gives; null: the same
};

// Doubles hold 53 bits: with a top level below 2 the last 4 bits are rounded to an even multiple of
// 16, so deme 8 of level 8 vanishes and deme 9 comes back as deme 16.
constexpr form_case FORMS[] = {
    {"3.1.12", "003.001.012.000.000.000.000.000", 0x03010C0000000000, 2, nullptr},
    {"003.01.12.0.0.", "003.001.012.000.000.000.000.000", 0x03010C0000000000, 2, nullptr},
    {"", "000.000.000.000.000.000.000.000", 0, -1, nullptr},
    {"0.0.0.7", "000.000.000.007.000.000.000.000", 0x0000000700000000, 3, nullptr},
    {"300", "044.000.000.000.000.000.000.000", 0x2C00000000000000, 0, nullptr},
    {"256.-1", "000.255.000.000.000.000.000.000", 0x00FF000000000000, 1, nullptr},
    {"1.2.3.4.5", "001.002.003.004.005.000.000.000", 0x0102030405000000, 4, nullptr},
    {"1.2.3.4.5.6.7.8.none", "001.002.003.004.005.006.007.008", 0x0102030405060708, 7,
     "001.002.003.004.005.006.007.000"},
    {"1.2.3.4.5.6.7.9", "001.002.003.004.005.006.007.009", 0x0102030405060709, 7, "001.002.003.004.005.006.007.016"},
    {"200.1", "200.001.000.000.000.000.000.000", 0xC801000000000000, 1, nullptr},
    {"127.255.255.255.255.255.255.255", "127.255.255.255.255.255.255.255", 0x7FFFFFFFFFFFFFFF, 7,
     "128.000.000.000.000.000.000.000"},
    {"255.255.255.255.255.255.255.255", "255.255.255.255.255.255.255.255", 0xFFFFFFFFFFFFFFFF, 7, nullptr},
};

TEST(DemeID, ReadsWritesAndPacks) {
  for (const auto& [text, full, packed, level, unpacked] : FORMS) {
    SCOPED_TRACE(text);
    DemeID deme;
    EXPECT_TRUE(deme.set("9.9.9.9.9.9.9.9"));
    EXPECT_TRUE(deme.set(std::string(text)));
    EXPECT_EQ(deme.text(), full);
    EXPECT_EQ(deme.getLevel(), level);
    EXPECT_EQ(static_cast<std::uint64_t>(deme.binary()), packed);
    EXPECT_TRUE(deme.set(deme.binary()));
    EXPECT_EQ(deme.text(), unpacked == nullptr ? full : unpacked);
  }
}

TEST(DemeID, RaisesTheConversionErrors) {
  for (const char* text : {".", "1..2", ".5", "a", "1.b", " "}) {
    EXPECT_THROW(DemeID().set(std::string(text)), std::invalid_argument) << text;
  }
  EXPECT_THROW(DemeID().set(std::string("1.99999999999")), std::out_of_range);
  EXPECT_THROW(isSubMember(std::string("1"), std::string("x")), std::invalid_argument);
  EXPECT_TRUE(isSubMember(std::string("x"), std::string("x"))) << "compared before conversion";
}

constexpr std::tuple<const char*, const char*, bool> MEMBERS[] = {
    {"3.1", "3.1.12", true},   {"3.1.12", "3.1", false}, {"3", "4.1", false}, {"0", "5.2", true},
    {"3.1", "3.01", true},     {"3.1", "3.10", false},   {"3", "3", true},    {"0.1", "5.1", false},
    {"3.0.5", "3.1.5", false}, {"200", "200.7", true},   {"5.2", "0", false},
};

TEST(DemeID, IsInsideByPrefixInBothForms) {
  for (const auto& [parent, member, inside] : MEMBERS) {
    SCOPED_TRACE(std::string(parent) + " holds " + member);
    EXPECT_EQ(isSubMember(std::string(parent), std::string(member)), inside);
    DemeID parent_id, member_id;
    EXPECT_TRUE(parent_id.set(std::string(parent)));
    EXPECT_TRUE(member_id.set(std::string(member)));
    EXPECT_EQ(isSubMember(parent_id.binary(), member_id.binary()), inside);
  }
}

}  // namespace
}  // namespace spx
