#pragma once

#include <string>
#include <vector>

namespace spx::console {

/// A program that draws, and the Debian package that holds it.
struct drawing_tool {
  const char* program;
  const char* package;
};

inline constexpr drawing_tool GNUPLOT{"gnuplot", "gnuplot-nox"};
inline constexpr drawing_tool GRAPHVIZ{"dot", "graphviz"};
inline constexpr drawing_tool SVG_CONVERTER{"rsvg-convert", "librsvg2-bin"};

/// Runs the program with the arguments, gives it the input, and waits for its end.
/// @return what it wrote to its standard output
/// Throws Failure when it is not installed, with the package that holds it, and when it fails, with the first line that
/// it wrote to its standard error.
std::string runTool(const drawing_tool& tool, const std::vector<std::string>& arguments, const std::string& input);

/// What a picture is written as. DOT is the description of a pedigree that Graphviz reads.
enum class IMAGE_FORMAT { SVG, PNG, PDF, DOT };

/// The format of a name: "svg", "png", "pdf", and "dot" where there is such a text. Throws UsageError for another name.
IMAGE_FORMAT imageFormat(const std::string& name, bool has_dot);

/// An SVG picture in another format; the same text for SVG. Throws what runTool throws.
std::string convertedImage(std::string svg, IMAGE_FORMAT format);

}  // namespace spx::console
