#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace spx::console {

/// Equal in any letter case, with blank, "-" and "_" as the same character.
bool isSameWord(std::string_view a, std::string_view b);

/// A word in the form in which it is typed: lower case, "-" for blanks and "_".
std::string typedWord(std::string_view text);

/// Words joined for messages and help texts.
std::string joinedWords(const std::vector<std::string>& words, std::string_view between = ", ");

}  // namespace spx::console
