#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace spx::fuzz {

using csv_row = std::vector<std::string>;

/// Reads a delimited table as any reader of such tables does. A cell in quotes may hold anything, a
/// quote doubled; every other cell ends at the separator or the line feed, and the process is ended
/// when such a cell holds characters that readers take for a quote, a comment or a line end.
std::vector<csv_row> readCsv(std::string_view text, char separator);

}  // namespace spx::fuzz
