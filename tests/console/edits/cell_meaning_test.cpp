#include "console/edits/cell_meaning.h"

#include <gtest/gtest.h>

#include "console/base/failure.h"
#include "console/edits/change_time.h"
#include "console/studbook/journal.h"

namespace spx::console {
namespace {

// A sheet with the same meaning in other words must not count as a change, and one with another
// meaning must.
TEST(CellMeaning, ComparesWhatCellsSay) {
  const struct {
    const char* field;
    const char* a;
    const char* b;
    bool same;
  } cases[] = {
      {"sex", "F", "female", true},
      {"sex", "2", "f", true},
      {"sex", "", "unknown", true},
      {"sex", "m", "f", false},
      {"birth_date", "1990", "1990-01-01", false},  // another accuracy
      {"birth_date", "1990-05-01", "19900501", true},
      {"birth_date", "NA", "", true},
      {"birth_date", "1990-13-01", "1990-13-02", false},  // neither can be read
      {"sire", "0", "unknown", true},
      {"sire", "0001", "1", false},
      {"sire", "A", "a", false},
      {"location", "", ".", true},
      {"location", "2.1", "2.10", false},
      {"taxon", "unknown", "", true},
      {"death_event", "Lost to follow up", "lost-to-follow-up", true},
      {"death_event", "", "death", false},
      {"birth_accuracy", "by year", "BY_YEAR", true},
      {"fcoef", "0.5", "0.50", true},
      {"fcoef", "nan", "", true},
      {"fcoef", "0.5", "0.51", false},
      {"birth_range", "30", "030", true},
      {"house name", "Ada", "ada", false},
      {"house name", "NA", "", true},
      {"house name", "unknown", "", false},  // in a user-defined field this is a value
  };
  for (const auto& [field, a, b, same] : cases) {
    EXPECT_EQ(sameMeaning(field, a, b), same) << field << ": " << a << ", " << b;
    EXPECT_EQ(sameMeaning(field, b, a), same) << field << ": " << b << ", " << a;
  }
}

TEST(ChangeTime, ReadsWhatAKeeperTypes) {
  ::setenv("TZ", "UTC-2", 1);  // two hours ahead of UTC
  ::tzset();
  const struct {
    const char* typed;
    bool end_of_day;
    const char* time;  ///< null: refused
  } cases[] = {
      {"2026-03-01", false, "2026-02-28T22:00:00Z"},
      {"2026-03-01", true, "2026-03-01T21:59:59Z"},
      {"2026-03-01 14:30", true, "2026-03-01T12:30:00Z"},
      {"2026-03-01T14:30:05", false, "2026-03-01T12:30:05Z"},
      {"2026-03-01T14:30:05Z", false, "2026-03-01T14:30:05Z"},
      {"2026-03", false, nullptr},
      {"2026-03-01 14:30 or so", false, nullptr},
      {"yesterday", false, nullptr},
      {"", false, nullptr},
  };
  for (const auto& [typed, end_of_day, time] : cases) {
    SCOPED_TRACE(typed);
    if (time == nullptr) {
      EXPECT_THROW(journalTime("--at", typed, end_of_day), UsageError);
    } else {
      EXPECT_EQ(journalTime("--at", typed, end_of_day), time);
    }
  }
  EXPECT_EQ(localTime("2026-02-28T22:00:00Z"), "2026-03-01 00:00");
  EXPECT_EQ(localTime(""), "");
}

TEST(Journal, NetCellsGoFromTheFirstValueToTheLast) {
  const auto cell = [](std::int64_t row, const char* field, std::optional<std::string> before,
                       std::optional<std::string> after) {
    return journal_cell{1, "animals", row, "", field, std::move(before), std::move(after)};
  };
  const std::vector<journal_cell> net = netCells({
      cell(1, "sex", "m", "f"),
      cell(2, WHOLE_ROW, std::nullopt, "2"),  // added and removed again
      cell(2, "id", "", "x"),
      cell(1, "name", "a", "b"),
      cell(1, "sex", "f", "u"),
      cell(1, "name", "b", "a"),  // came back
      cell(2, "id", "x", ""),
      cell(2, WHOLE_ROW, "2", std::nullopt),
      cell(3, WHOLE_ROW, "3", std::nullopt),
  });
  ASSERT_EQ(net.size(), 2U);
  EXPECT_EQ(net[0].before, "m");
  EXPECT_EQ(net[0].after, "u");
  EXPECT_EQ(net[1].row, 3);
  EXPECT_EQ(net[1].after, std::nullopt);
}

}  // namespace
}  // namespace spx::console
