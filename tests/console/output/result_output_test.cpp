#include "console/output/result_output.h"

#include <pty.h>
#include <sstream>
#include <unistd.h>

#include "console/base/natural_order.h"
#include "console/output/pager.h"
#include "console/output/terminal_filter.h"
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
