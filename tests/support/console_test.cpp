#include "spx/support/console.h"

#include <algorithm>

#include "spx/support/progress_bar.h"

#include "tests/support/temporary_home.h"

namespace qs_lib {
class Console : public TemporaryHome {};

constexpr char SCALE[] =
    "0%   10   20   30   40   50   60   70   80   90   100%\n"
    "|----|----|----|----|----|----|----|----|----|----|\n";

TEST_F(Console, BarShowsOneMarkAStepAtMost) {
  setVerbose(true);
  for (const auto& [steps, marks] : {std::pair{1, 1}, {10, 10}, {51, 51}, {1000, 51}}) {
    ProgressBar bar(static_cast<std::uint64_t>(steps), "Title");
    for (int i = 0; i < steps; ++i) {
      EXPECT_TRUE(bar.progress());
    }
    EXPECT_FALSE(bar.progress());
    bar.finished();
    const std::string output = takeOutput();
    const std::string expected = std::string("[Title]\n") + SCALE + std::string(static_cast<std::size_t>(marks), '*');
    EXPECT_EQ(output.substr(0, expected.size()), expected);
    const std::string rest = output.substr(expected.size());
    EXPECT_EQ(rest.substr(0, 13), "\nTime used : ");
    EXPECT_EQ(rest.substr(rest.size() - 9), " seconds\n");
    EXPECT_EQ(std::count(rest.begin(), rest.end(), '\n'), 2) << "the time once only";
  }
}

TEST_F(Console, BarOfNothingNeverFinishesByItself) {
  setVerbose(true);
  ProgressBar bar(0, "");
  EXPECT_TRUE(bar.progress());
  EXPECT_TRUE(bar.progress());
  bar.end();
  EXPECT_TRUE(bar.progress()) << "the end of the line is not the end of the bar";
  EXPECT_EQ(takeOutput(), std::string(SCALE) + "**\n*");
}

TEST_F(Console, QuietBarOnlyEndsItsLine) {
  ProgressBar bar(2, "Title");
  EXPECT_TRUE(bar.progress());
  EXPECT_TRUE(bar.progress());
  EXPECT_FALSE(bar.progress());
  EXPECT_EQ(takeOutput(), "");
  bar.end();
  EXPECT_EQ(takeOutput(), "\n");
}

TEST_F(Console, TextsGoWhereTheyBelong) {
  display("unchanged");
  message("line");
  errorMessage("wrong");
  EXPECT_EQ(takeOutput(), "unchangedline\n");
  EXPECT_EQ(takeErrors(), "wrong\n");
  std::string collected;
  setDisplayHandler([&](const std::string& text) { collected += text; });
  display("a");
  message("b");
  setDisplayHandler({});
  display("c");
  EXPECT_EQ(collected + takeOutput(), "ab\nc");
  setDisplayHandler([&collected, kept = std::string(100, 'x')](const std::string& text) {
    setDisplayHandler({});
    collected = text + kept;  // the running handler must still exist
  });
  display("d");
  display("e");
  EXPECT_EQ(collected + takeOutput(), "d" + std::string(100, 'x') + "e");
  pauseKey();
  EXPECT_EQ(pauses, 1);
  setPauseHandler([&collected, kept = std::string(100, 'p')] {
    setPauseHandler({});
    collected = kept;
  });
  pauseKey();
  pauseKey();  // waits for no key: the input is not a terminal
  EXPECT_EQ(collected, std::string(100, 'p'));
}
}  // namespace qs_lib
