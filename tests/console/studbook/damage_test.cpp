#include <filesystem>
#include <random>

#include <SQLiteCpp/SQLiteCpp.h>

#include "console/base/failure.h"
#include "console/studbook/file_rows.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class DamageTest : public ConsoleTest {
 protected:
  DamageTest() {
    std::filesystem::create_directory(at("t"));
    writeContent(at("t/animals.csv"), "id,sire,dam,sex,location,chip\n1,,,m,1.1,a\n2,WILD,1,f,1.2,b\n3,1,2,m,1.1,\n");
    writeContent(at("t/events.csv"), "id,date,event,location\n1,2001,arrival,1.2\n3,2002,arrival,1.1\n");
    writeContent(at("t/locations.csv"), "level,id,name\nzoo,1,Home\npen,1.1,Left\npen,1.2,Right\n");
    writeContent(at("t/programs.csv"), "name\nA\nB\n");
    EXPECT_EQ(run({"import", at("t"), "--studbook", file}), 0) << takeErrors();
    sound = contentOf(file);
  }

  /// All cells of the file, as loading reads them; empty where it is refused.
  std::string cells() const {
    std::string text;
    try {
      const studbook_tables tables = storedTables(std::make_shared<StudbookFile>(file, FILE_ACCESS::READ));
      for (const table_source* table : {&tables.animals, &tables.events, &tables.locations, &tables.programs}) {
        if (!table->open) {
          continue;
        }
        const std::unique_ptr<RowSource> rows = table->open();
        text += "\f";
        for (const std::string& title : rows->titles()) {
          text += title + ",";
        }
        while (rows->next()) {
          text += "\n";
          for (const std::string_view cell : rows->row()) {
            text += std::string(cell) + ",";
          }
        }
      }
    } catch (const Failure&) {
      return "";
    } catch (const TableError&) {
      return "";
    }
    return text;
  }

  void change(const std::string& sql) const { SQLite::Database(file, SQLite::OPEN_READWRITE).exec(sql); }

  const std::string file = at("t.studbook");
  std::string sound;
};

// Most bytes of the file are zeros that nothing reads, so half of the damage is aimed at other bytes.
TEST_F(DamageTest, NoDamagedByteIsReadAsAnotherStudbook) {
  const std::string expected = cells();
  ASSERT_NE(expected.find("1,2001,arrival,1.2,"), std::string::npos) << expected;
  std::mt19937 random(18);
  std::size_t refused = 0;
  for (int damage = 0; damage < 2000; ++damage) {
    std::string content = sound;
    std::size_t place = random() % content.size();
    if (damage % 10 == 0) {
      content.resize(place);
    } else {
      while (damage % 2 == 0 && content[place] == '\0') {
        place = (place + 1) % content.size();
      }
      content[place] = static_cast<char>(content[place] ^ (1 + random() % 255));
    }
    writeContent(file, content);
    const std::string found = cells();
    ASSERT_TRUE(found.empty() || found == expected) << "byte " << place << " of damage " << damage << ": " << found;
    refused += found.empty() ? 1 : 0;
  }
  EXPECT_GT(refused, 500U);
}

TEST_F(DamageTest, CommandsRefuseFilesThatLackTablesOrColumns) {
  struct damage_case {
    const char* sql;
    const char* reason;  ///< null where the change is accepted
  };
  const damage_case cases[] = {
      {"UPDATE animals SET sex = 'f' WHERE id = '3'", nullptr},
      {"DELETE FROM events", nullptr},
      {"DELETE FROM columns WHERE of_table = 'animals'", "it has no table of animals"},
      {"DELETE FROM columns WHERE of_table = 'events'", "\"events\" has values in the column \"animal\""},
      {"DELETE FROM columns WHERE title = 'sire'", "\"animals\" has values in the column \"sire\""},
      {"DELETE FROM columns WHERE title = 'chip'", "\"animals\" has values in the column \"user_"},
      {"DELETE FROM columns WHERE of_table = 'programs'; DELETE FROM programs", nullptr},
      {"DROP TABLE animals", "no such table"},
      {"ALTER TABLE animals RENAME COLUMN sex TO gender", "no such column: animals.sex"},
      {"PRAGMA writable_schema = ON; DELETE FROM sqlite_schema WHERE name LIKE 'spx_sums%'", nullptr},
      {"ALTER TABLE programs RENAME TO p; CREATE VIEW programs AS WITH RECURSIVE n(\"row\", name) AS "
       "(SELECT 1, 'x' UNION ALL SELECT \"row\" + 1, name FROM n) SELECT * FROM n",
       "t.studbook"},
  };
  for (const auto& [sql, reason] : cases) {
    SCOPED_TRACE(sql);
    writeContent(file, sound);
    change(sql);
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"check"}, {"animal", "set", "1", "rearing=hand"}, {"check"}}) {
      std::vector<std::string> line = {"--studbook", file};
      line.insert(line.end(), words.begin(), words.end());
      takeErrors();
      const int code = run(line);
      const std::string errors = takeErrors();
      EXPECT_EQ(code == 1, reason != nullptr) << errors;
      EXPECT_TRUE(reason == nullptr || errors.find(reason) != std::string::npos) << errors;
    }
  }
  // A change after the triggers were removed looks like damage.
  writeContent(file, sound);
  change("DROP TRIGGER spx_sums_animals_DELETE; DELETE FROM animals WHERE id = '3'; PRAGMA foreign_keys = OFF");
  takeErrors();
  EXPECT_EQ(run({"--studbook", file, "check"}), 1);
  EXPECT_NE(takeErrors().find("3 rows of animals were stored, 2 were found"), std::string::npos);
}

}  // namespace
}  // namespace spx::console
