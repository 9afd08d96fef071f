#pragma once

#include <string>
#include <string_view>

namespace spx::console {

/// The text in lower case and without accents, to compare words that people write in many ways: "Père" is "pere",
/// "MÄNNCHEN" is "mannchen", "Größe" is "grosse". Knows the letters of Western Europe.
std::string foldedText(std::string_view text);

/// A column title for comparison: folded, without blanks and punctuation, but with "#" and "%".
/// "Stud-book No." is "studbookno".
std::string titleWord(std::string_view title);

}  // namespace spx::console
