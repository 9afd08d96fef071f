#include "console/tables/folded_text.h"

#include <cstddef>

namespace spx::console {
namespace {

// The plain letters for U+00E0 to U+00FF, indexed by the second byte (0xA0 to 0xBF) of their UTF-8
// form; U+00C0 to U+00DF are their capitals.
constexpr std::string_view PLAIN_LETTERS = "aaaaaa\1ceeeeiiiidnooooo\1ouuuuyty";

std::string_view withoutAccent(unsigned char second) {
  constexpr unsigned char SHARP_S = 0x9F;
  constexpr unsigned char AE = 0x06;
  if (second == SHARP_S) {
    return "ss";
  }
  const std::size_t letter = second & 0x1F;
  if (letter == AE) {
    return "ae";
  }
  return PLAIN_LETTERS[letter] == '\1' ? std::string_view() : PLAIN_LETTERS.substr(letter, 1);
}

}  // namespace

std::string foldedText(std::string_view text) {
  constexpr char LETTERS_OF_WESTERN_EUROPE = '\xC3';
  std::string folded;
  folded.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char letter = text[at];
    const bool accented = letter == LETTERS_OF_WESTERN_EUROPE && at + 1 < text.size();
    if (accented) {
      folded += withoutAccent(static_cast<unsigned char>(text[++at]));
    } else {
      folded += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
  }
  return folded;
}

std::string titleWord(std::string_view title) {
  constexpr std::string_view IGNORED = " \t\r\n_-.,:;/\\()[]'\"";
  std::string word;
  for (const char letter : foldedText(title)) {
    if (IGNORED.find(letter) == std::string_view::npos) {
      word += letter;
    }
  }
  return word;
}

}  // namespace spx::console
