#include "console/charts/svg_text.h"

#include <algorithm>
#include <charconv>

#include "spx/support/xml_report.h"

#include "console/base/display_text.h"

namespace spx::console {
namespace {

std::string escaped(const std::string& text) {
  std::string out;
  qs_lib::appendXmlText(out, visibleText(text), true);
  return out;
}

/// Removes the elements of that name with their content: the titles that tools give to parts of a picture mean
/// nothing to a reader.
std::string withoutElements(const std::string& svg, const std::string& name) {
  const std::string begin_tag = "<" + name + ">";
  const std::string end_tag = "</" + name + ">";
  std::string out;
  std::size_t from = 0;
  for (std::size_t begin = svg.find(begin_tag); begin != std::string::npos; begin = svg.find(begin_tag, from)) {
    out += svg.substr(from, begin - from);
    from = std::min(svg.find(end_tag, begin), svg.size() - end_tag.size()) + end_tag.size();
  }
  return out + svg.substr(from);
}

}  // namespace

std::string describedSvg(std::string svg, const std::string& title, const std::string& description) {
  svg.erase(0, std::min(svg.find("<svg"), svg.size()));
  svg = withoutElements(withoutElements(svg, "title"), "desc");
  const std::size_t end = svg.find('>');
  if (end != std::string::npos) {
    svg.insert(end + 1, "\n<title>" + escaped(title) + "</title>\n<desc>" + escaped(description) + "</desc>");
    svg.insert(4, " role=\"img\"");
  }
  return svg;
}

std::string shortestReal(double value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return {buffer, result.ptr};
}

}  // namespace spx::console
