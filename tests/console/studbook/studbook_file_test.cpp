#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/wait.h>

#include "console/studbook/write_tables.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

constexpr char EXAMPLE[] = SPX_SOURCE_DIR "/examples/studbook";

class StudbookFileTest : public ConsoleTest {
 protected:
  void import(const std::string& tables) {
    ASSERT_EQ(run({"import", tables, "--studbook", file, "--replace"}), 0) << takeErrors();
  }

  std::string outputOf(const std::string& studbook, const char* word) {
    takeOutput();
    run({"--studbook", studbook, word});
    return takeOutput();
  }

  /// The contents of all tables in the file.
  std::string tables() {
    std::filesystem::create_directory(at("out"));
    writeTables(file, at("out"));
    std::string text;
    for (const std::string& name : tableFiles(file)) {
      text += contentOf(at("out/" + name)) + "\f";
    }
    return text;
  }

  const std::string file = at("t.studbook");
};

TEST_F(StudbookFileTest, TablesComeBackByteForByte) {
  const std::string odd =
      "Ind,\"a;b\",,x,x,Sex\n1,\"q \"\"q\"\"\",\" b \",\"line\nbreak\",\xC3\xBC\xE9,f\n1,,.,NA,0,\n";
  std::filesystem::create_directory(at("odd"));
  writeContent(at("odd/animals.csv"), odd);
  writeContent(at("odd/events.csv"), "note,date,event,id\nx,1990,arrival,1\n");
  for (const std::string& from : {at("odd"), std::string(EXAMPLE)}) {
    import(from);
    const std::string written = tables();
    for (const std::string& name : tableFiles(file)) {
      EXPECT_EQ(contentOf(at("out/" + name)), contentOf(from + "/" + name));
    }
    for (const char* word : {"list", "summary", "locations", "programs", "user-fields"}) {
      EXPECT_EQ(outputOf(file, word), outputOf(from, word)) << word;
    }
    import(file);  // from its own tables
    EXPECT_EQ(tables(), written);
  }
}

TEST_F(StudbookFileTest, ChangesAreMadeAsAWholeOrNotAtAll) {
  import(EXAMPLE);
  const std::string table = EXAMPLE + std::string("/animals.csv");
  const struct {
    std::vector<std::string> words;
    int code;
    const char* says;  ///< on standard error, or in the tables after a change
  } cases[] = {
      {{"animal", "set", "0055", "Sire=0004", "mother=X9", "rearing= hand "},
       1,
       "there is no animal \"X9\" to be the dam"},
      {{"animal", "set", "0055", "Sire=0004", "mother=X9", "rearing= hand ", "--new"}, 0, "0004,X9,"},
      {{"animal", "set", "0055", "g_cites=2", "HOUSE NAME=a,b"}, 0, ",\"a,b\",,2\n"},
      {{"animal", "set", "0055", "rearin=hand"}, 2, "did you mean \"rearing\"?"},
      {{"animal", "set", "0055", "color=red"}, 2, "house_name, microchip"},
      {{"animal", "set", "0055", "id=1"}, 2, "spx animal rename OLD NEW"},
      {{"animal", "set", "0055", "gender=m", "sex=f"}, 2, "\"sex\" is given twice"},
      {{"animal", "set", "0055", "rearing=parent", "sex=x"}, 2, "sex: \"x\" is not a sex"},
      {{"animal", "set", "0055", "rearing=arms"}, 1, "column \"rearing\", animal \"0055\""},
      {{"animal", "set", "9999", "sex=m"}, 1, "there is no animal \"9999\""},
      {{"animal", "set", "0055", "birth_location=Monteverd"}, 2, "did you mean \"Monteverde\"?"},
      {{"animal", "set", "0055", "taxon=Montana"}, 2, "did you mean \"montana\"?"},
      {{"animal", "set", "0144", "sex=m"}, 1, "2 animals have the ID \"0144\""},
      {{"animal", "add", "0055"}, 1, "there is already an animal \"0055\""},
      {{"animal", "add", "N1", "birth_location=7.7", "--new"}, 1, "\"7.7\" is not in the locations table"},
      {{"animal", "add", "N1", "dob=2024"}, 0, "\nN1,,,,2024,"},
      {{"event", "add", "N1", "date=2024-02", "event=arrival", "location=2.1.3"}, 0, "\nN1,2024-02,arrival,2.1.3,,\n"},
      {{"event", "add", "N1", "event=arrival"}, 1, "the date is missing"},
      {{"--map", "sex=sex", "animal", "set", "0055", "sex=m"}, 0, ""},
      {{"--map", "sex=sex", "check"}, 2, "--map can only be used with tables"},
      {{"--studbook", table, "animal", "set", "0055", "sex=m"}, 1, "not a studbook file"},
      {{"--studbook", table, "export", "tables", "--to", home}, 1, "not a studbook file; spx import makes one"},
      {{"--studbook", EXAMPLE, "export", "tables", "--to", home}, 1, "not a studbook file; spx import makes one"},
      {{"import", EXAMPLE, "--studbook", table}, 1, "will not be overwritten"},
  };
  for (auto [words, code, says] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    const std::string before = tables();
    if (std::find(words.begin(), words.end(), "--studbook") == words.end()) {
      words.insert(words.begin(), {"--studbook", file});
    }
    takeErrors();
    EXPECT_EQ(run(words), code);
    EXPECT_NE((code == 0 ? tables() : takeErrors()).find(says), std::string::npos) << says;
    EXPECT_TRUE(code == 0 || tables() == before);
  }
}

TEST_F(StudbookFileTest, RefusesDamagedAndForeignFiles) {
  import(EXAMPLE);
  const std::string sound = contentOf(file);
  const auto with = [&](std::size_t at, const std::string& bytes) {
    return std::string(sound).replace(at, bytes.size(), bytes);
  };
  const std::pair<std::string, const char*> cases[] = {
      {sound.substr(0, 16), "is damaged"},
      {sound.substr(0, sound.size() / 2), "is damaged"},
      {with(100, std::string(20000, '\x7F')), "is damaged"},
      {with(63, "\x09"), "is a studbook file of version 9; this program reads versions 1 to 2"},
      {with(68, "mine"), "is an SQLite database, but not a studbook file"},
  };
  for (const auto& [content, reason] : cases) {
    writeContent(file, content);
    for (const char* word : {"check", "import"}) {
      takeErrors();
      EXPECT_EQ(run({"--studbook", file, word, word[0] == 'i' ? EXAMPLE : "--format=text"}), 1);
      EXPECT_NE(takeErrors().find(reason), std::string::npos) << word << ": " << reason;
    }
    EXPECT_EQ(contentOf(file), content);
  }
}

TEST_F(StudbookFileTest, UndoesWhatAKilledWriterLeft) {
  import(EXAMPLE);
  const std::string former = contentOf(file);
  for (const bool replace : {false, true}) {
    if (fork() == 0) {
      SQLite::Database writer(file, SQLite::OPEN_READWRITE);
      writer.exec("PRAGMA cache_size = 1; BEGIN; UPDATE animals SET rearing = 'hand'");
      _exit(0);  // without closing: its pages are in the file, and the rollback journal exists
    }
    wait(nullptr);
    ASSERT_NE(contentOf(file), former);
    replace ? import(at("t.studbook")) : static_cast<void>(outputOf(file, "list"));
    EXPECT_EQ(contentOf(replace ? file + ".bak" : file), former);
  }
}

}  // namespace
}  // namespace spx::console
