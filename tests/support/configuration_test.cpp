#include "spx/support/configuration.h"

#include <random>

#include "spx/support/tokenizer.h"

#include "tests/support/temporary_home.h"

namespace qs_lib {
class KeyFile : public TemporaryHome {
 protected:
  KeyFile() { nameFile(file_); }

  static void nameFile(Configuration& configuration) {
    configuration.setDirectory("~");
    configuration.setName("test");
    configuration.setExtension("project");
    configuration.setSection("PROJECT");
  }

  Configuration& move(const std::string& directory, const std::string& name = "test") {
    file_.setDirectory(directory);
    file_.setName(name);
    file_.setExtension("");
    return file_;
  }

  /// Writes the content to a file and loads it into a new configuration.
  bool loads(const std::string& content) {
    writeContent(at("test.project"), content);
    return file_.load();
  }

  /// All entries as text, to be compared at once.
  static std::string dump(const Configuration& configuration) {
    std::string text;
    for (const auto& [key, element] : configuration.entries()) {
      text += key + "|" + element.type + "|" + element.value + "|" + element.description + "\n";
    }
    return text;
  }

  Configuration file_;
};

TEST_F(KeyFile, IsReadableText) {
  file_.set("TIMESTAMP", "DATE", "replaced", "as a whole");
  file_.set("TIMESTAMP", "DATE", "FALSE", "Add the time to dates");
  file_.set("PATH", "TEXT", "~/spx/studbooks (old) # \\1", "Where\tit lies");
  ASSERT_TRUE(file_.save());
  EXPECT_EQ(contentOf(at("test.project")),
            "[PROJECT]\n\n# Where\\tit lies\nPATH (TEXT) = ~/spx/studbooks (old) # \\\\1\n"
            "\n# Add the time to dates\nTIMESTAMP (DATE) = FALSE\n\n[END]\n");
  EXPECT_EQ(file_.get("absent").value + file_.get("absent").type, "");
}

TEST_F(KeyFile, AnyBytesComeBackExactly) {
  std::mt19937 random(3);
  const std::string alphabet = std::string("a(=)#[]\\ \t\r\nxn0\xEF\xBB\xBF\x7F\xFF\x01") + '\0';
  const auto hostile = [&] {
    std::string text(random() % 8, ' ');
    for (char& character : text) {
      character = alphabet[random() % alphabet.size()];
    }
    return text;
  };
  for (int round = 0; round < 60; ++round) {
    file_.clearEntries();
    file_.setSection(hostile());
    for (int i = 0; i < 10; ++i) {
      file_.set(hostile(), hostile(), hostile(), hostile());
    }
    ASSERT_TRUE(file_.save());
    Configuration loaded;
    nameFile(loaded);
    loaded.setSection(file_.getSection());
    ASSERT_TRUE(loaded.load()) << contentOf(at("test.project"));
    ASSERT_EQ(dump(loaded), dump(file_)) << contentOf(at("test.project"));
  }
  std::string every_byte(1 << 20, '\0');
  for (std::size_t i = 0; i < every_byte.size(); ++i) {
    every_byte[i] = static_cast<char>(i);
  }
  file_.set(every_byte, every_byte, every_byte, every_byte);
  const std::string before = dump(file_);
  EXPECT_TRUE(file_.save());
  EXPECT_TRUE(file_.load());
  EXPECT_EQ(dump(file_), before);
}

TEST_F(KeyFile, WhatPeopleWriteIsTolerated) {
  EXPECT_TRUE(
      loads("\xEF\xBB\xBF\r\n# My own comment\r\n [PROJECT] \r\n\r\n# Not of this key\r\n\r\n"
            "B(TEXT)=C:\\data\\x \r\n# A comment\r\n# The nearest\r\n\tA  ( REAL ) =  1.5\r\n"
            "B (TEXT) = \\x41\\q\\xZZ\r\n# done\r\n[END]"));
  EXPECT_EQ(dump(file_), "A|REAL|1.5|The nearest\nB|TEXT|A\\q\\xZZ|\n");
}

TEST_F(KeyFile, IncompleteKeyFilesLeaveTheEntriesUnchanged) {
  file_.set("A", "TEXT", "one", "first");
  file_.set("B", "TEXT", "two", "second");
  ASSERT_TRUE(file_.save());
  const std::string whole = contentOf(at("test.project"));
  file_.clearEntries();
  file_.set("KEPT", "", "", "");
  std::vector<std::string> bad =
      Tokenizer(
          ";A (TEXT) = 1\n[END]\n;[PROJECT]\n[PROJECT]\n[END]\n;[PROJECT\n[END]\n;"
          "[PROJECT]\nA = 1\n[END]\n;[PROJECT]\nA (TEXT) 1\n[END]\n;[PROJECT]\nA (TEXT\n[END]\n;"
          "[PROJECT]\n[END]\nA (TEXT) = 1\n;[VIEW]\n[END]\n;\x7F"
          "ELF\1\2\n\n",
          ";")
          .tokens();
  bad.push_back(std::string(1 << 20, '('));
  for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
    bad.push_back(whole.substr(0, size));
  }
  for (const std::string& content : bad) {
    ASSERT_FALSE(loads(content)) << content.substr(0, 200);
  }
  std::filesystem::remove(at("test.project"));
  std::filesystem::create_directory(at("test.project"));
  EXPECT_FALSE(file_.load()) << "a directory";
  EXPECT_FALSE(file_.save()) << "a directory";
  EXPECT_FALSE(move("~/missing").load());
  EXPECT_FALSE(file_.save());
  EXPECT_FALSE(move("/dev", "zero").load()) << "endless";
  EXPECT_EQ(dump(file_), "KEPT|||\n");
}

TEST_F(KeyFile, SectionMattersOnlyWhileItMustMatch) {
  const std::string content = "[VIEW]\nA (TEXT) = 1\n[END]\n";
  EXPECT_FALSE(loads(content));
  file_.setMatchSection(false);
  EXPECT_TRUE(loads(content));
  EXPECT_EQ(file_.getSection(), "PROJECT");
  EXPECT_EQ(file_.get("A").value.real(), 1);
}

TEST_F(KeyFile, FullDiskIsReportedAndTheDeviceKept) {
  EXPECT_FALSE(move("/dev", "full").save());
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}
}  // namespace qs_lib
