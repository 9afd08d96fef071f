#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Texts from tables as messages show them: without control characters, and shortened.
namespace spx::console {

std::string shownText(std::string_view text);

/// The same in quotes.
std::string quotedText(std::string_view text);

/// Names as a note lists them: "A, B, C". Of more than ten the first, and "and N more".
std::string nameList(const std::vector<std::string>& names);

}  // namespace spx::console
