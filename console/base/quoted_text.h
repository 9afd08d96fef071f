#pragma once

#include <string>
#include <string_view>

namespace spx::console {

/// A text from a table as messages show it: in quotes, without control characters, and shortened.
std::string quotedText(std::string_view text);

}  // namespace spx::console
