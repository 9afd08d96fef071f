#include "console/output/result_output.h"

#include <filesystem>
#include <pty.h>
#include <sstream>
#include <unistd.h>

#include "console/base/natural_order.h"
#include "console/output/pager.h"
#include "console/output/terminal_filter.h"
#include "console/tables/workbook.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

class ResultOutputTest : public ConsoleTest {};

TEST_F(ResultOutputTest, AFileIsWrittenWholeAndReplacedOnlyWhenAskedFor) {
  const std::string book = table("a.csv", "id\n1\n2\n");
  const auto list = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"--studbook", book, "list", "--format", "csv", "--columns", "id"});
    return run(options);
  };
  EXPECT_EQ(list({"-o", "-"}), 0);
  EXPECT_EQ(takeOutput(), "id\n1\n2\n");
  EXPECT_EQ(list({"-o", at("out")}), 0);
  EXPECT_EQ(takeOutput(), "");
  EXPECT_EQ(contentOf(at("out")), "id\n1\n2\n");
  EXPECT_EQ(list({"-o", at("out"), "--limit", "1"}), 1);
  EXPECT_NE(takeErrors().find("already exists; use --overwrite to replace it"), std::string::npos);
  EXPECT_EQ(list({"-o", at("out"), "--overwrite", "--sort", "nothing"}), 2);
  EXPECT_EQ(contentOf(at("out")), "id\n1\n2\n") << "a failure leaves the file";
  EXPECT_EQ(list({"-o", at("out"), "--overwrite", "--limit", "1"}), 0);
  EXPECT_EQ(contentOf(at("out")), "id\n1\n");
  EXPECT_EQ(list({"-o", at("none/out")}), 1);
  EXPECT_EQ(list({"--limit", "-1"}), 2);
}

TEST_F(ResultOutputTest, TheEndingOfAFileDecidesWhatIsWritten) {
  const std::string book = table("book.csv", "id,dob,note\n01,1998-05,=1\n2,1999-01-31,x\n");
  const struct {
    const char* file;
    std::vector<std::string> options;
    const char* content;  ///< or the reason
  } cases[] = {
      {"a.csv", {}, "id,birth_date,note\n01,1998-05-01,=1\n"},
      {"a.JSON", {}, "[\n{\"id\":\"01\","},
      {"a.txt", {}, "ID  Born"},
      {"a", {"--format", "csv"}, "id,birth_date"},
      {"a.txt", {"--format", "json"}, "[\n{"},
      {"a.csv", {"--format", "json"}, "asks for something else"},
      {"a.json", {"--format", "csv"}, "asks for something else"},
      {"a.xlsx", {"--format", "csv"}, "asks for something else"},
      {"a.ods", {}, "cannot write .ods files; give the file the ending .txt, .csv, .json or .xlsx"},
      {"a.pdf", {}, "cannot write .pdf files"},
  };
  for (const auto& [file, options, content] : cases) {
    SCOPED_TRACE(file);
    std::vector<std::string> words = {"--studbook",         book, "list",   "--columns",
                                      "id,birth_date,note", "-o", at(file), "--overwrite"};
    words.insert(words.end(), options.begin(), options.end());
    std::filesystem::remove(at(file));
    const bool is_written = run(words) == 0;
    EXPECT_NE((is_written ? contentOf(at(file)) : takeErrors()).find(content), std::string::npos) << content;
    EXPECT_EQ(is_written, std::filesystem::exists(at(file)));
  }
  EXPECT_EQ(run({"--studbook", book, "show", "2", "-o", at("c.xlsx")}), 2);
  EXPECT_NE(takeErrors().find("the ending .txt, .csv or .json"), std::string::npos);
  EXPECT_EQ(run({"--studbook", book, "check", "-o", at("c.ods")}), 2);
}

TEST_F(ResultOutputTest, AWorkbookHasTheCellsThatPeopleSee) {
  const std::string book = table("a.csv", "id,dob,note\n01,1998-05,=1\n2,1999-01-31,x\n");
  const std::vector<std::string> list = {"--studbook", book,        "list", "--columns", "id,birth_date,note,fcoef",
                                         "-o",         at("l.xlsx")};
  ASSERT_EQ(run(list), 0) << takeErrors();
  EXPECT_EQ(run(list), 1) << "it exists";
  const auto rows = Workbook::openSheet(Workbook::read(at("l.xlsx")), 0);
  std::string text;
  for (const std::string& title : rows->titles()) {
    text += title + "|";
  }
  while (rows->next()) {
    text += "\n";
    for (const std::string_view cell : rows->row()) {
      text += std::string(cell) + "|";
    }
  }
  EXPECT_EQ(text, "ID|Born|note|F|\n01|1998-05|=1|0|\n2|1999-01-31|x|0|");
}

TEST_F(ResultOutputTest, ThePagerGetsEverythingUntilItsReaderLeaves) {
  Pager all("sed s/^/:/ >" + at("all"));
  all.stream() << "a\nb\n";
  all.finish();
  EXPECT_EQ(contentOf(at("all")), ":a\n:b\n");
  Pager first("head -n 1 >" + at("first"));
  const std::string line(1000, 'x');
  for (int i = 0; i < 10000 && first.stream(); ++i) {
    first.stream() << line << "\n";
  }
  EXPECT_FALSE(first.stream()) << "the stream fails once nobody reads";
  first.finish();
  EXPECT_EQ(contentOf(at("first")), line + "\n");
  setenv("PAGER", "nothing-of-that-name", 1);
  EXPECT_EQ(pagerCommand(), "");
  setenv("PAGER", "", 1);
  EXPECT_EQ(pagerCommand(), "");
}

TEST_F(ResultOutputTest, ATerminalGetsNoControlCharacters) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(::openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr), 0);
  std::ostringstream terminal;
  {
    const TerminalFilter filter(terminal, ends[1]);
    terminal << "a\x1B[2J\tb\n\xC2\x9B" << 'c' << "\r" << std::flush << "\xE3\x83\x91";
  }
  EXPECT_EQ(terminal.str(), "a\\x1b[2J\tb\n\\x9bc\\r\u30D1");
  std::ostringstream file;
  {
    const TerminalFilter filter(file, -1);
    file << "\x1B";
  }
  EXPECT_EQ(file.str(), "\x1B");
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(NaturalOrder, NumbersCountAndOnlyEqualTextsAreEqual) {
  const char* const sorted[] = {"", "1", "01a", "2", "9", "10", "A", "a", "a2", "A10", "b", "\xC3\xA4"};
  for (std::size_t i = 0; i + 1 < std::size(sorted); ++i) {
    EXPECT_LT(compareNaturally(sorted[i], sorted[i + 1]), 0) << sorted[i];
    EXPECT_GT(compareNaturally(sorted[i + 1], sorted[i]), 0) << sorted[i];
  }
  EXPECT_EQ(compareNaturally("A10", "A10"), 0);
  EXPECT_NE(compareNaturally("01", "1"), 0);
}

}  // namespace
}  // namespace spx::console
