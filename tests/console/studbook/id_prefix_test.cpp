#include <filesystem>

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

constexpr char ANIMALS[] =
    "id,sire,dam,sex,birth_date\nPablo,WILD,UNKF,m,1980\nP1,,,m,1980\n2,P7,,f,1980\n3,P1,2,f,2000\n4,Pablo,UNK,m,"
    "2001\n";
constexpr char EVENTS[] = "id,date,event,location\nPablo,1990-01-01,arrival,North\n3,2002,arrival,South\n";

class IdPrefixTest : public ConsoleTest {
 protected:
  IdPrefixTest() {
    table("animals.csv", ANIMALS);
    table("events.csv", EVENTS);
  }

  const std::string book = at("t.studbook");
};

TEST_F(IdPrefixTest, AnimalsThatNoListWouldShowAreNamed) {
  EXPECT_EQ(run({"--studbook", book, "import", home}), 1);
  const std::string told = takeErrors();
  EXPECT_NE(told.find("2 animals are treated as placeholders because of their IDs: Pablo, P1\n"), std::string::npos);
  EXPECT_NE(told.find("no list would show the animals in the lines 2, 3; nothing was written\n"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(book));
  EXPECT_EQ(run({"--studbook", book, "import", home, "--dry-run"}), 1);
  EXPECT_EQ(run({"--studbook", book, "import", home, "--id-prefix", "P"}), 2);
  EXPECT_EQ(run({"--studbook", book, "import", home, "--placeholders"}), 0);
  takeOutput();
  const std::pair<std::vector<std::string>, int> checks[] = {
      {{}, 3}, {{"--placeholders"}, 0}, {{"--id-prefix", "Z"}, 0}};
  for (const auto& [options, code] : checks) {
    std::vector<std::string> words = {"--studbook", home, "check"};
    words.insert(words.end(), options.begin(), options.end());
    EXPECT_EQ(run(words), code);
    EXPECT_EQ(takeOutput().find("Pablo is treated as a placeholder") != std::string::npos, code == 3);
  }
}

// Parents without a row are unchanged; IDs imported with a prefix are exported without it.
TEST_F(IdPrefixTest, APrefixMakesThemAnimalsAndIsDroppedAgain) {
  EXPECT_EQ(run({"--studbook", book, "import", home, "--id-prefix", "Z-"}), 0);
  EXPECT_EQ(run({"--studbook", book, "export", "tables", "--to", home, "--overwrite"}), 0);
  EXPECT_EQ(contentOf(at("animals.csv")),
            "id,sire,dam,sex,birth_date\nZ-Pablo,WILD,UNKF,m,1980\nZ-P1,,,m,1980\nZ-2,P7,,f,1980\nZ-3,Z-P1,Z-2,f,2000\n"
            "Z-4,Z-Pablo,UNK,m,2001\n");
  EXPECT_EQ(run({"--studbook", book, "export", "tables", "--to", home, "--overwrite", "--drop-id-prefix", "Z-"}), 0);
  EXPECT_EQ(contentOf(at("animals.csv")), ANIMALS);
  EXPECT_EQ(contentOf(at("events.csv")), EVENTS);
}

}  // namespace
}  // namespace spx::console
