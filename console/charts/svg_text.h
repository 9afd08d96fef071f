#pragma once

#include <string>

namespace spx::console {

/// The text of a picture with a title and a description for screen readers in place of those of the tool that drew it,
/// and without what stands before the `svg` element.
std::string describedSvg(std::string svg, const std::string& title, const std::string& description);

/// A number as short as it reads back the same.
std::string shortestReal(double value);

}  // namespace spx::console
