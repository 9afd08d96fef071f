#include "console/base/words.h"

#include <algorithm>

namespace spx::console {
namespace {

char folded(char letter) {
  if (letter >= 'A' && letter <= 'Z') {
    return static_cast<char>(letter - 'A' + 'a');
  }
  return letter == ' ' || letter == '-' ? '_' : letter;
}

}  // namespace

bool isSameWord(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return folded(x) == folded(y); });
}

std::string typedWord(std::string_view text) {
  std::string word(text);
  for (char& letter : word) {
    letter = folded(letter) == '_' ? '-' : folded(letter);
  }
  return word;
}

std::string joinedWords(const std::vector<std::string>& words, std::string_view between) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : std::string(between)) + word;
  }
  return text;
}

}  // namespace spx::console
