#include <regex>
#include <unistd.h>

#include <sys/stat.h>
#include <sys/wait.h>

#include "spx/support/atomic_file.h"
#include "spx/support/csv_report.h"
#include "spx/support/directory.h"
#include "spx/support/file_name.h"
#include "spx/support/log_file.h"
#include "spx/support/read_file.h"
#include "spx/support/write_file.h"

#include "tests/support/temporary_home.h"

namespace qs_lib {
class Files : public TemporaryHome {
 protected:
  /// The names of all files in the home directory, temporary ones included.
  std::vector<std::string> filesAtHome() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(home)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(Files, NamesSplitAndJoin) {
  // A path; its directory, name and extension.
  constexpr std::pair<const char*, const char*> CASES[] = {{"~/spx/a.b.xml", "~/spx|a.b|xml"},
                                                           {"/x", "/|x|"},
                                                           {"x", "|x|"},
                                                           {"a.d/x", "a.d|x|"},
                                                           {"a//x.y", "a/|x|y"},
                                                           {"a/", "a||"},
                                                           {".view", "||view"},
                                                           {"a/..", "a|..|"},
                                                           {"x.", "|x.|"},
                                                           {"", "||"},
                                                           {"/", "/||"}};
  for (const auto& [path, expected] : CASES) {
    const auto& [directory, name, extension] = splitFileName(path);
    EXPECT_EQ(directory + "|" + name + "|" + extension, expected);
    EXPECT_EQ(createFileName(directory, name, extension), path);
  }
  for (const char* name : {"", ".", "..", "a/b", "/"}) {
    EXPECT_FALSE(isPlainName(name)) << name;
  }
  EXPECT_FALSE(isPlainName(std::string("a\0b", 3)));
  EXPECT_TRUE(isPlainName("..a"));
}

TEST_F(Files, HomeReplacesATildeInFrontOnly) {
  EXPECT_EQ(homePath("~/spx/studbooks"), home + "/spx/studbooks");
  EXPECT_EQ(homePath("/tmp/~x"), "/tmp/~x");
  setenv("HOME", "", 1);
  EXPECT_EQ(homePath("~/x"), "~/x") << "not the root directory";
  unsetenv("HOME");
  EXPECT_EQ(homePath("~/x"), "~/x");
}

TEST_F(Files, WritingReplacesOrAppendsInOrder) {
  WriteFile file;
  file.setFileName("~/out.txt");
  file.writeLine("lost: the file is closed");
  for (const bool append : {false, false, true}) {
    file.setAppend(append);
    ASSERT_TRUE(file.fileOpen());
    file.writeLine("one");
    file.stream() << 1234567 << " ";
    file.write("two\n");
    EXPECT_TRUE(file.fileClose());
  }
  EXPECT_EQ(contentOf(at("out.txt")), "one\n1234567 two\none\n1234567 two\n");
  EXPECT_TRUE(file.fileClose()) << "closing twice";
}

TEST_F(Files, LostDataIsReportedWhenClosing) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{1} << 22}) {
    for (const bool staged : {false, true}) {
      WriteFile file;
      file.setFileName("/dev/full");
      file.setStaged(staged);
      ASSERT_TRUE(file.fileOpen());
      file.write(std::string(size, 'x'));
      EXPECT_FALSE(file.fileClose());
      file.setFileName("~/good");
      EXPECT_TRUE(file.fileOpen()) << "the failure is not kept";
      EXPECT_TRUE(file.fileClose()) << "the failure is not kept";
    }
  }
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(Files, UnusablePathsCannotBeOpened) {
  WriteFile out;
  ReadFile in;
  for (const std::string& path : {home, at("missing/file"), std::string(), home + std::string("/a\0b", 4)}) {
    for (const bool staged : {false, true}) {
      out.setFileName(path);
      out.setStaged(staged);
      EXPECT_FALSE(out.fileOpen()) << path;
    }
    in.setFileName(path);
    EXPECT_FALSE(in.fileOpen()) << path;
  }
  EXPECT_TRUE(filesAtHome().empty());
}

TEST_F(Files, StagedFileReplacesTheOldOneWhenComplete) {
  const std::string long_name(255, 'n');
  writeContent(at(long_name), "old");
  chmod(at(long_name).c_str(), 0604);
  std::filesystem::create_symlink(at(long_name), at("link"));
  WriteFile file;
  file.setFileName(at("link"));
  file.setStaged(true);
  ASSERT_TRUE(file.fileOpen());
  file.writeLine("discarded");
  file.fileDiscard();
  ASSERT_TRUE(file.fileOpen());
  file.writeLine("new");
  EXPECT_EQ(contentOf(at(long_name)), "old");
  EXPECT_TRUE(file.fileClose());
  EXPECT_EQ(contentOf(at(long_name)), "new\n");
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(at(long_name)).permissions()), 0604u);
  EXPECT_EQ(filesAtHome(), (std::vector<std::string>{"link", long_name}));
  std::filesystem::remove(at(long_name));
  ASSERT_TRUE(file.fileOpen()) << "a link to a file that is not there";
  ASSERT_TRUE(file.fileClose()) << "a link to a file that is not there";
  EXPECT_TRUE(std::filesystem::is_symlink(at("link")));
  EXPECT_TRUE(contentOf(at(long_name)).empty());
}

TEST_F(Files, WhatAKilledWriterLeftIsRemovedByTheNext) {
  writeContent(at(".spx-1-1.tmp"), "half");
  writeContent(at(".spx-notes.txt"), "kept");
  AtomicFile writing(at("a"));
  ASSERT_TRUE(writing.create());
  EXPECT_EQ(filesAtHome().size(), 2U);
  AtomicFile other(at("b"));
  ASSERT_TRUE(other.create() && other.commit());
  EXPECT_TRUE(writing.commit()) << "it was being written";
  EXPECT_EQ(filesAtHome(), (std::vector<std::string>{".spx-notes.txt", "a", "b"}));
}

TEST_F(Files, AnExceptionKeepsTheCompleteFile) {
  writeContent(at("file"), "old");
  try {
    CsvReport report;
    report.setFileName(at("file"));
    report.setStaged(true);
    ASSERT_TRUE(report.fileOpen());
    report.write("half");
    throw std::bad_alloc();
  } catch (const std::bad_alloc&) {
    EXPECT_EQ(contentOf(at("file")), "old");
  }
  EXPECT_EQ(filesAtHome(), std::vector<std::string>{"file"});
}

TEST_F(Files, AForkedChildLeavesTheFileToItsParent) {
  for (const bool staged : {false, true}) {
    auto file = std::make_unique<WriteFile>();
    file->setFileName(at("file"));
    file->setStaged(staged);
    ASSERT_TRUE(file->fileOpen());
    file->write("one ");
    const pid_t child = fork();
    if (child == 0) {
      file.reset();
      _exit(0);
    }
    EXPECT_EQ(waitpid(child, nullptr, 0), child);
    file->write("two");
    EXPECT_TRUE(file->fileClose());
    EXPECT_EQ(contentOf(at("file")), "one two") << staged;
    EXPECT_EQ(filesAtHome(), std::vector<std::string>{"file"});
  }
}

TEST_F(Files, FailedCommitLeavesNothing) {
  std::filesystem::create_directory(at("gone"));
  AtomicFile file(at("gone/file"));
  ASSERT_TRUE(file.create());
  std::filesystem::remove_all(at("gone"));
  EXPECT_FALSE(file.commit());
  EXPECT_TRUE(filesAtHome().empty());
}

TEST_F(Files, ReadingLinesWithAndWithoutALimit) {
  writeContent(at("in.txt"), "one\r\n\n" + std::string(3000, 'x') + "\nlast");
  ReadFile file;
  std::string line;
  EXPECT_FALSE(file.readLine(line));
  file.setFileName("~/in.txt");
  for (const std::size_t limit : {std::size_t{1023}, std::size_t{0}}) {
    ASSERT_TRUE(file.fileOpen());
    std::vector<std::size_t> sizes;
    while (limit > 0 ? file.readLine(line, limit) : file.readLine(line)) {
      sizes.push_back(line.size());
    }
    EXPECT_EQ(sizes, (std::vector<std::size_t>{4, 0, limit > 0 ? limit : 3000, 4}));
    EXPECT_TRUE(file.fileClose());
  }
}

TEST_F(Files, DirectoriesAreCreatedAndListed) {
  EXPECT_TRUE(createDir("~/views"));
  EXPECT_TRUE(createDir("~/views")) << "it is there already";
  EXPECT_FALSE(createDir("~/no/views")) << "one directory only";
  for (const char* name : {"b.view", "a.b.view", "B.view", "c.xml", ".view", "view", "d.viewx"}) {
    writeContent(at("views/") + name, "");
  }
  EXPECT_TRUE(createDir("~/views/dir.view"));
  EXPECT_FALSE(createDir("~/views/view")) << "a file has the name";
  std::vector<std::string> names = {"first"};
  EXPECT_TRUE(listDir("~/views", "view", true, names));
  EXPECT_TRUE(listDir("~/views", "xml", false, names));
  EXPECT_FALSE(listDir("~/views/view", "view", true, names));
  EXPECT_FALSE(listDir("~/missing", "view", true, names));
  EXPECT_EQ(names, (std::vector<std::string>{"first", "B", "a.b", "b", "c.xml"}));
  std::filesystem::current_path(at("views"));
  names.clear();
  EXPECT_TRUE(createDir("here"));
  EXPECT_TRUE(listDir("", "xml", true, names));
  EXPECT_EQ(names, std::vector<std::string>{"c"});
}

TEST_F(Files, LogAddsStampedLines) {
  LogFile log;
  EXPECT_TRUE(log.write("inert without a file"));
  log.setFileName("~/log.txt");
  EXPECT_TRUE(log.write("one\nline"));
  EXPECT_TRUE(log.write("two"));
  EXPECT_TRUE(std::regex_match(contentOf(at("log.txt")), std::regex("([-\\d]{10} [:\\d]{8} (one line|two)\n){2}")));
}
}  // namespace qs_lib
