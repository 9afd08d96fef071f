#include "console/base/nearest_word.h"

#include <algorithm>

namespace spx::console {
namespace {

// Longer words cannot have been meant for a word of the program; this also bounds the cost.
constexpr std::size_t LONGEST_WORD = 64;

/// How many slips are allowed: one, or two in words of at least six characters.
std::size_t mostSlips(const std::string& typed) {
  return std::clamp<std::size_t>(typed.size() / 3, 1, 2);
}

}  // namespace

std::size_t wordDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before_last;
  std::vector<std::size_t> last;
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) {
    row[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    before_last = std::move(last);
    last = row;
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool is_same = a[i - 1] == b[j - 1];
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (is_same ? 0 : 1)});
      const bool is_exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (is_exchanged) {
        row[j] = std::min(row[j], before_last[j - 2] + 1);
      }
    }
  }
  return row.back();
}

std::string suggestion(const std::string& typed, const std::vector<std::string>& words) {
  if (typed.size() > LONGEST_WORD) {
    return std::string();
  }
  const std::string* nearest = nullptr;
  std::size_t best = mostSlips(typed) + 1;
  for (const std::string& word : words) {
    const bool is_begun = typed.size() > 2 && word.starts_with(typed);
    const std::size_t slips = is_begun ? 1 : wordDistance(typed, word);
    if (slips < best && !word.empty()) {
      best = slips;
      nearest = &word;
    }
  }
  return nearest == nullptr ? std::string() : "; did you mean \"" + *nearest + "\"?";
}

}  // namespace spx::console
