#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/core/animal_data.h"

#include "console/studbook/bytes.h"
#include "console/studbook/open_tables.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

constexpr char EXAMPLE[] = SPX_SOURCE_DIR "/examples/studbook";

/// The example as a studbook file, of which the animal 0055 is told apart by its rearing.
class StoredImageTest : public ConsoleTest {
 protected:
  StoredImageTest() { EXPECT_EQ(run({"import", EXAMPLE, "--studbook", file}), 0); }

  void change(const std::string& sql) const { SQLite::Database(file, SQLite::OPEN_READWRITE).exec(sql); }

  std::int64_t number(const std::string& sql) const { return SQLite::Database(file).execAndGet(sql).getInt64(); }

  /// Whether loading takes the image, and what is loaded then.
  std::pair<bool, std::string> loaded() {
    studbook_tables tables = openTables({file, "", "", "", {}});
    bool restored = false;
    tables.restore = [&restored, restore = tables.restore](const auto& note) { return restored = restore(note); };
    loadStudbook(std::move(tables));
    takeOutput();
    for (const char* word : {"list", "check", "locations", "taxa", "programs", "user-fields"}) {
      run({"--studbook", file, word});
    }
    run({"--studbook", file, "show", "0055"});
    return {restored, takeOutput()};
  }

  const std::string file = at("t.studbook");
};

TEST_F(StoredImageTest, GivesWhatTheTablesGiveUntilOneOfThemChanges) {
  const auto [from_image, image] = loaded();
  change("DELETE FROM spx_image");
  const auto [still_there, tables] = loaded();
  EXPECT_TRUE(from_image && !still_there);
  EXPECT_EQ(image, tables);
  for (const char* sql : {"UPDATE animals SET rearing = 'peer' WHERE id = '0055'", "DELETE FROM events",
                          "INSERT INTO events (animal, date, event) VALUES (9, '2001', 'arrival')",
                          "UPDATE locations SET name = 'N' WHERE name LIKE 'N%'", "DELETE FROM programs",
                          "UPDATE columns SET title = 'x' WHERE field LIKE 'user%'"}) {
    EXPECT_EQ(run({"--studbook", file, "animal", "set", "0055", "rearing=hand"}), 0);
    EXPECT_TRUE(loaded().first) << "a change by hand keeps a new one";
    change(sql);
    EXPECT_EQ(number("SELECT count(*) FROM spx_image"), 0) << sql;
  }
}

TEST_F(StoredImageTest, EditsMakeItAnewWhateverBecameOfIt) {
  for (const char* sql : {"DROP TABLE spx_image", "ALTER TABLE spx_image RENAME TO old_image", "VACUUM",
                          "DROP TRIGGER spx_image_animals_update",
                          "ALTER TABLE locations RENAME TO places; CREATE TABLE locations AS SELECT * FROM places"}) {
    SCOPED_TRACE(sql);
    change(sql);
    EXPECT_FALSE(loaded().first);
    EXPECT_EQ(run({"--studbook", file, "animal", "set", "0055", "rearing=hand"}), 0);
    EXPECT_TRUE(loaded().first);
    for (const char* table : {"animals", "locations"}) {
      change("UPDATE " + std::string(table) + " SET \"row\" = \"row\"");
      EXPECT_FALSE(loaded().first);
      EXPECT_EQ(run({"--studbook", file, "animal", "set", "0055", "rearing=hand"}), 0);
    }
  }
}

TEST_F(StoredImageTest, IsPassedOverWhereItIsNotOfTheseTables) {
  const std::int64_t schema = number("PRAGMA schema_version");
  EXPECT_EQ(run({"--studbook", file, "animal", "set", "0055", "rearing=hand"}), 0);
  EXPECT_NE(number("PRAGMA schema_version"), schema);
  change("PRAGMA schema_version = " + std::to_string(schema));
  EXPECT_FALSE(loaded().first) << "another file's";
  EXPECT_EQ(run({"import", EXAMPLE, "--studbook", file}), 0);
  const std::string image_schema = std::to_string(number("PRAGMA schema_version"));
  const std::string former = loaded().second;
  change("DROP TRIGGER spx_image_animals_update; UPDATE animals SET rearing = 'peer'");
  EXPECT_FALSE(loaded().first);
  EXPECT_NE(loaded().second, former);
  change("PRAGMA schema_version = " + image_schema);
  EXPECT_EQ(loaded().second, former) << "it is the image that is taken";
  change(
      "DROP TRIGGER spx_image_events_insert; "
      "INSERT INTO events (animal, date, event) VALUES (9, '2001', 'arrival'); "
      "PRAGMA schema_version = " +
      image_schema);
  EXPECT_FALSE(loaded().first) << "another number of rows";
}

TEST_F(StoredImageTest, DamageIsMadeUpForByTheTables) {
  const std::string former = loaded().second;
  std::vector<std::string> changes = {"DELETE FROM spx_image WHERE part = 0",
                                      "DELETE FROM spx_image WHERE part = 1",
                                      "UPDATE spx_image SET bytes = x''",
                                      "UPDATE spx_image SET bytes = x'00' WHERE part = 1",
                                      "INSERT INTO spx_image SELECT part + 1, bytes FROM spx_image "
                                      "WHERE part = 1",
                                      "INSERT INTO spx_image SELECT 2, bytes FROM spx_image WHERE part = 0"};
  for (const char* part : {"0", "1"}) {
    for (const int place : {1, 9, 20, 300}) {
      const std::string at = std::to_string(place);
      changes.push_back("UPDATE spx_image SET bytes = CAST(substr(bytes, 1, " + at +
                        " - 1) || x'FE' || substr(bytes, " + at + " + 1) AS BLOB) WHERE part = " + part);
    }
  }
  for (const std::string& sql : changes) {
    run({"--studbook", file, "animal", "set", "0055", "rearing=parent"});
    ASSERT_TRUE(loaded().first);
    change(sql);
    const auto [restored, text] = loaded();
    EXPECT_FALSE(restored) << sql;
    EXPECT_EQ(text, former) << sql;
  }
}

TEST(Bytes, ComeBackOrAreRefused) {
  ByteWriter out;
  for (const std::uint64_t value : {0UL, 127UL, 128UL, 16384UL, ~0UL}) {
    out.number(value);
  }
  out.text("");
  out.text(std::string(200, 'x'));
  out.fixed(-1.5);
  ByteReader in(out.bytes());
  for (const std::uint64_t value : {0UL, 127UL, 128UL, 16384UL, ~0UL}) {
    EXPECT_EQ(in.number(), value);
  }
  EXPECT_EQ(in.text(), "");
  EXPECT_EQ(in.text(), std::string(200, 'x'));
  EXPECT_EQ(in.fixed<double>(), -1.5);
  EXPECT_TRUE(in.atEnd());
  EXPECT_THROW(in.number(), BadBytes);
  EXPECT_THROW(ByteReader("\x80\x80").number(), BadBytes);
  EXPECT_THROW(ByteReader(std::string(11, '\x80')).number(), BadBytes);
  EXPECT_THROW(ByteReader("\x05"
                          "four")
                   .text(),
               BadBytes);
  EXPECT_THROW(ByteReader("\x05").numberBelow(5), BadBytes);
  EXPECT_NE(checkSum("ab", 1), checkSum(std::string("ab\0", 3), 1));
  EXPECT_NE(checkSum("12345678x", 1), checkSum("x12345678", 1));
  EXPECT_NE(checkSum("ab", 1), checkSum("ab", 2));
}

}  // namespace
}  // namespace spx::console
