#pragma once

#include <string>
#include <string_view>

namespace spx::console {

/// A text of any bytes as UTF-8 without control characters, which become blanks: bytes that are not UTF-8 are taken as
/// Latin-1.
std::string printableUtf8(std::string_view text);

/// The text of a picture with a title and a description for screen readers in place of those of the tool that drew it,
/// and without what stands before the `svg` element.
std::string describedSvg(std::string svg, const std::string& title, const std::string& description);

/// A number as short as it reads back the same.
std::string shortestReal(double value);

}  // namespace spx::console
