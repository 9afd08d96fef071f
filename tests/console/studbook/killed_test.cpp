#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>

#include <SQLiteCpp/SQLiteCpp.h>

#include "console/studbook/write_tables.h"
#include "console/tables/workbook.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class KilledTest : public ConsoleTest {
 protected:
  /// Runs the program, and kills it after that many milliseconds. @return whether it had finished
  static bool runFor(int milliseconds, const std::vector<std::string>& words) {
    std::string line = "timeout -s KILL " + std::to_string(milliseconds / 1000.0) + " " SPX_PROGRAM;
    for (const std::string& word : words) {
      line += " " + word;
    }
    return std::system((line + " >/dev/null 2>&1").c_str()) == 0;
  }

  std::string tablesOf(const std::string& studbook) {
    std::filesystem::create_directory(at("out"));
    writeTables(studbook, at("out"));
    std::string text;
    for (const std::string& name : tableFiles(studbook)) {
      text += contentOf(at("out/" + name));
    }
    return text;
  }
};

// After a kill at any moment the files hold the old state or the new one, never a mixture.
TEST_F(KilledTest, AtAnyMomentTheOldOrTheNewStateIsWhole) {
  std::string texts[] = {"id,sex,rearing\n", "id,sex,rearing\n"};
  for (int animal = 1; animal <= 400; ++animal) {
    texts[0] += std::to_string(animal) + ",m,hand\n";
    texts[1] += std::to_string(animal) + ",f,parent\n";
  }
  const std::string a = table("a.csv", texts[0]), b = table("b.csv", texts[1]);
  const std::string imported = at("imported.studbook"), edited = at("edited.studbook"), restored = at("r.studbook");
  ASSERT_EQ(run({"project", "create", "p"}), 0);
  ASSERT_EQ(run({"import", a, "--studbook", edited}), 0);
  { SQLite::Database(edited, SQLite::OPEN_READWRITE).exec("UPDATE changes SET time = '2000-01-01T00:00:00Z'"); }
  using words = std::vector<std::string>;
  const auto on = [&](words command) {
    command.insert(command.begin(), {"--studbook", edited});
    return command;
  };
  const struct {
    words to[2];  ///< commands that lead to the one state and to the other
    std::function<std::string()> state;
  } cases[] = {
      {{{"import", a, "--studbook", imported}, {"import", b, "--studbook", imported}},
       [&] { return tablesOf(imported); }},
      {{{"--studbook", edited, "animal", "set", "7", "sex=m", "rearing=hand"},
        {"--studbook", edited, "animal", "set", "7", "sex=f", "rearing=parent"}},
       [&] { return tablesOf(edited); }},
      {{on({"animal", "rename", "07", "7"}), on({"animal", "rename", "7", "07"})}, [&] { return tablesOf(edited); }},
      {{on({"animal", "remove", "x"}), on({"birth", "x", "--sire", "8", "--on", "2000", "--at", "Y", "--new"})},
       [&] { return tablesOf(edited); }},
      {{on({"event", "remove", "9"}), on({"transfer", "9", "--to", "Y", "--on", "2001", "--new"})},
       [&] { return tablesOf(edited); }},
      {{on({"animal", "set", "11", "death_date=", "death_event="}), on({"death", "11", "--on", "2001"})},
       [&] { return tablesOf(edited); }},
      {{on({"field", "remove", "note"}), on({"field", "add", "note"})}, [&] { return tablesOf(edited); }},
      {{on({"redo"}), on({"undo"})}, [&] { return tablesOf(edited); }},
      {{on({"restore", "--at", "2999-01-01", "-o", restored, "--overwrite"}),
        on({"restore", "--at", "2000-01-01", "-o", restored, "--overwrite"})},
       [&] { return tablesOf(restored); }},
      {{{"--studbook", a, "--project", "p", "view", "save", "v", "--overwrite", "--sex", "male"},
        {"--studbook", a, "--project", "p", "view", "save", "v", "--overwrite", "--rearing", "hand"}},
       [&] { return contentOf(at("spx/projects/p/views/v.view")); }},
      {{{"--studbook", a, "list", "--columns", "id,sex", "-o", at("list.xlsx"), "--overwrite"},
        {"--studbook", b, "list", "--columns", "id,sex", "-o", at("list.xlsx"), "--overwrite"}},
       [&] {
         const auto rows = Workbook::openSheet(Workbook::read(at("list.xlsx")), 0);
         return rows->next() ? std::string((*rows)[1]) : std::string();
       }},
      {{{"--studbook", a, "export", "pedigree", "--to", home, "--overwrite"},
        {"--studbook", b, "export", "pedigree", "--to", home, "--overwrite"}},
       [&] { return contentOf(at("pedigree.csv")); }},
  };
  std::mt19937 random(7);
  for (const auto& [to, state] : cases) {
    std::string states[2];
    for (const int which : {1, 0}) {
      ASSERT_TRUE(runFor(60000, to[which])) << to[which].back();
      states[which] = state();
    }
    ASSERT_TRUE(states[0] != states[1]) << to[0].back();
    int longest = 10;
    std::size_t now = 0;
    for (int round = 0; round < 16; ++round) {
      // The time is doubled until a command has finished.
      const int wait = round < 4 ? longest : std::uniform_int_distribution(1, longest)(random);
      const bool ended = runFor(wait, to[1 - now]);
      if (!ended && wait == longest) {
        longest *= 2;
      }
      const std::string found = state();
      EXPECT_TRUE(found == states[1 - now] || (!ended && found == states[now])) << to[0].back();
      now = found == states[0] ? 0 : 1;
    }
  }
}

}  // namespace
}  // namespace spx::console
