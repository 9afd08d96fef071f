#pragma once

#include <string>
#include <string_view>

namespace spx::console {

/// Appends a text as a cell of a comma-separated table. It is quoted only when it contains a comma, a quote, a
/// line break or one of the characters in `others`, or begins or ends with a blank.
void appendCsvCell(std::string& line, std::string_view text, std::string_view others = "\t");

}  // namespace spx::console
