#pragma once

#include <string>
#include <string_view>

namespace spx::console {

/// Appends a text as a cell of a table separated by commas: in quotes only where it has to be, which is where it
/// holds a comma, a quote, a line break or one of the other characters, or begins or ends with a blank.
void appendCsvCell(std::string& line, std::string_view text, std::string_view others = "\t");

}  // namespace spx::console
