#pragma once

#include <string>
#include <vector>

namespace spx::console {

/// An external drawing program and the Debian package that contains it.
struct drawing_tool {
  const char* program;
  const char* package;
};

inline constexpr drawing_tool GNUPLOT{"gnuplot", "gnuplot-nox"};
inline constexpr drawing_tool GRAPHVIZ{"dot", "graphviz"};
inline constexpr drawing_tool SVG_CONVERTER{"rsvg-convert", "librsvg2-bin"};

/// Runs the program with the arguments, gives it the input, and waits for its end.
/// @return what it wrote to its standard output
/// Throws Failure when it is not installed, with the package that contains it, and when it fails, with the first line
/// that it wrote to its standard error.
std::string runTool(const drawing_tool& tool, const std::vector<std::string>& arguments, const std::string& input);

/// The format of a picture. DOT is the description of a pedigree that Graphviz reads.
enum class IMAGE_FORMAT { SVG, PNG, PDF, DOT };

/// The format with that name: "svg", "png", "pdf", or "dot" when `has_dot`. Throws UsageError for another name.
IMAGE_FORMAT imageFormat(const std::string& name, bool has_dot);

/// Converts an SVG picture to another format; returns it unchanged for SVG. Throws what runTool throws.
std::string convertedImage(std::string svg, IMAGE_FORMAT format);

}  // namespace spx::console
