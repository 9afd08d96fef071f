#include "console/tables/location_registry.h"

#include <set>

#include "spx/core/meta_population.h"

#include "console/tables/value_text.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class LocationRegistryTest : public ConsoleTest {
 protected:
  LocationRegistryTest() { dropStudbook(); }

  /// The identifier that a text means; or why it means none.
  std::string find(const std::string& text) {
    std::string reason;
    const place where = locations.find(text, reason);
    if (where.number == 0) {
      return reason;
    }
    DemeID deme;
    deme.set(where.deme);
    return shortDemeText(deme);
  }

  void list(const std::string& deme, const std::string& name) { locations.add(*parseDeme(deme), name, {}); }

  LocationRegistry locations;
};

TEST_F(LocationRegistryTest, NamesAreNumberedAsTheyAreMet) {
  EXPECT_EQ(find("North"), "1");
  EXPECT_EQ(find("South"), "2");
  EXPECT_EQ(find("North"), "1");
  EXPECT_EQ(find("north"), "3") << "another name";
  EXPECT_NE(find("2.1").find("is an identifier, but other locations are given by name"), std::string::npos);
  EXPECT_EQ(find("300"), "4") << "no identifier has such a number: the code of an institution";
  EXPECT_EQ(locations.metNames(), (std::vector<std::string>{"North", "South", "north", "300"}));
  DemeID unknown;
  unknown.set(locations.unknown().deme);
  EXPECT_EQ(shortDemeText(unknown), "255");
}

TEST_F(LocationRegistryTest, IdentifiersBringWhatIsAboveThem) {
  EXPECT_EQ(find("2.1.3"), "2.1.3");
  EXPECT_EQ(find("2.1"), "2.1");
  EXPECT_EQ(MetaPop.levels().size(), 3U);
  EXPECT_NE(find("North").find("is a name, but other locations are given by identifier"), std::string::npos);
  EXPECT_NE(find("2.0.1").find("not a location identifier"), std::string::npos);
  EXPECT_NE(find("1.256").find("not a location identifier"), std::string::npos);
}

TEST_F(LocationRegistryTest, AListSettlesWhichIdentifiersThereAre) {
  for (const char* level : {"zoo", "yard"}) {
    locations.addLevel(level);
  }
  list("1", "Zoo");
  list("1.1", "Yard");
  list("1.2", "Yard");
  locations.setComplete();
  EXPECT_FALSE(locations.add(*parseDeme("1.2"), "again", {}));
  EXPECT_EQ(find("1.2"), "1.2");
  EXPECT_EQ(find("Zoo"), "1");
  EXPECT_NE(find("1.3").find("is not in the locations table"), std::string::npos);
  EXPECT_NE(find("Yard").find("is the name of several locations"), std::string::npos);
  EXPECT_EQ(find("Meadow"), "2") << "names that the list lacks are new locations";
}

// More names than a level has numbers go into the last of them.
TEST_F(LocationRegistryTest, NamesOverflowIntoALevelBelow) {
  std::set<std::string> demes;
  for (int name = 1; name <= 1000; ++name) {
    demes.insert(find("place " + std::to_string(name)));
  }
  EXPECT_EQ(demes.size(), 1000U);
  EXPECT_EQ(find("place 253"), "253");
  EXPECT_EQ(find("place 254").substr(0, 4), "254.");
  EXPECT_EQ(find("place 1000").substr(0, 4), "254.");
}

}  // namespace
}  // namespace spx::console
