#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace spx::console {

/// Caches the meanings of the few different words of a column, since parsing a word takes longer than looking it up.
template <typename Value>
class RememberedWords {
 public:
  using reader = std::optional<Value> (*)(std::string_view);

  explicit RememberedWords(reader read) : read_(read) {}

  std::optional<Value> operator()(std::string_view text) {
    for (const auto& [word, value] : words_) {
      if (word == text) {
        return value;
      }
    }
    const std::optional<Value> value = read_(text);
    if (value && words_.size() < MOST) {
      words_.emplace_back(text, *value);
    }
    return value;
  }

 private:
  static constexpr std::size_t MOST = 8;

  reader read_;
  std::vector<std::pair<std::string, Value>> words_;
};

}  // namespace spx::console
