#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Texts from tables as messages show them: without control characters, and shortened.
namespace spx::console {

std::string shownText(std::string_view text);

/// The same in quotes.
std::string quotedText(std::string_view text);

/// Names in a list for messages: "A, B, C". More than ten are shortened to the first ones "and N more".
std::string nameList(const std::vector<std::string>& names);

}  // namespace spx::console
