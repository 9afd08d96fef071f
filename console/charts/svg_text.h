#pragma once

#include <string>

namespace spx::console {

/// The text of a picture with a title and a description for screen readers in place of those of the tool that drew it,
/// and without anything before the `svg` element.
std::string describedSvg(std::string svg, const std::string& title, const std::string& description);

/// The shortest text that is read back as the same number.
std::string shortestReal(double value);

}  // namespace spx::console
