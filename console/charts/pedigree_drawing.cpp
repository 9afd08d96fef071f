#include "console/charts/pedigree_drawing.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "console/base/display_text.h"
#include "console/base/failure.h"
#include "console/charts/drawing_tool.h"
#include "console/charts/svg_text.h"

namespace spx::console {
namespace {

constexpr std::size_t NONE = drawn_animal::NONE;

/// A text in Graphviz's double quotes. Each line ends with `line_end`: "\\n" centres it, "\\l" aligns it to the
/// left.
std::string quoted(const std::vector<std::string>& lines, const char* line_end = "\\n") {
  std::string out = "\"";
  for (const std::string& line : lines) {
    for (const char character : visibleText(line)) {
      if (character == '"' || character == '\\') {
        out += '\\';
      }
      out += character;
    }
    out += line_end;
  }
  return out + "\"";
}

/// The generation of each animal: 0 without drawn parents, else one below the lower of its parents.
std::vector<std::size_t> generations(const std::vector<drawn_animal>& animals) {
  std::vector<std::size_t> generation(animals.size(), 0);
  std::vector<std::size_t> parents_left(animals.size(), 0);
  std::vector<std::vector<std::size_t>> offspring(animals.size());
  std::vector<std::size_t> ready;
  for (std::size_t i = 0; i < animals.size(); ++i) {
    for (const std::size_t parent : {animals[i].sire, animals[i].dam}) {
      if (parent != NONE) {
        offspring[parent].push_back(i);
        ++parents_left[i];
      }
    }
    if (parents_left[i] == 0) {
      ready.push_back(i);
    }
  }
  for (std::size_t next = 0; next < ready.size(); ++next) {
    for (const std::size_t child : offspring[ready[next]]) {
      generation[child] = std::max(generation[child], generation[ready[next]] + 1);
      if (--parents_left[child] == 0) {
        ready.push_back(child);
      }
    }
  }
  if (ready.size() < animals.size()) {
    throw Failure(
        "an animal of this pedigree is its own ancestor, so the pedigree cannot be drawn; spx check names the cycle");
  }
  return generation;
}

/// Founders that are drawn only as mates stand beside their mates, not in the top row.
void lowerFounders(const std::vector<drawn_animal>& animals, std::vector<std::size_t>& generation) {
  std::vector<std::size_t> highest(animals.size(), NONE);
  for (std::size_t i = 0; i < animals.size(); ++i) {
    for (const std::size_t parent : {animals[i].sire, animals[i].dam}) {
      if (parent != NONE) {
        highest[parent] = std::min(highest[parent], generation[i]);
      }
    }
  }
  for (std::size_t i = 0; i < animals.size(); ++i) {
    if (animals[i].sire == NONE && animals[i].dam == NONE && highest[i] != NONE) {
      generation[i] = highest[i] - 1;
    }
  }
}

/// Light to dark blue; the text stays readable on it.
std::string fill(double shade) {
  if (std::isnan(shade)) {
    return "white";
  }
  constexpr int WHITE[] = {255, 255, 255};
  constexpr int DARK[] = {86, 152, 206};
  static constexpr char DIGITS[] = "0123456789abcdef";
  std::string colour = "#";
  for (int part = 0; part < 3; ++part) {
    const auto value =
        static_cast<unsigned>(std::lround(WHITE[part] + std::clamp(shade, 0.0, 1.0) * (DARK[part] - WHITE[part])));
    colour += {DIGITS[value / 16], DIGITS[value % 16]};
  }
  return colour;
}

std::string node(const drawn_animal& animal, std::size_t place) {
  const char* shape = animal.sex == SEX::MALE ? "box" : animal.sex == SEX::FEMALE ? "ellipse" : "diamond";
  return "a" + std::to_string(place) + " [shape=" + shape + " label=" + quoted(animal.lines) + " fillcolor=\"" +
         fill(animal.shade) + "\"" + (animal.dead ? " class=\"dead\"" : "") + (animal.marked ? " penwidth=2.5" : "") +
         "];\n";
}

std::string edge(const std::string& from, const std::string& to, bool doubled) {
  return from + " -> " + to + (doubled ? " [color=\"#555555:invis:#555555\"];\n" : ";\n");
}

/// Joins the two parents at a dot, from which their offspring descend.
std::string matings(const std::vector<drawn_animal>& animals) {
  std::map<std::pair<std::size_t, std::size_t>, std::vector<std::size_t>> litters;
  for (std::size_t i = 0; i < animals.size(); ++i) {
    if (animals[i].sire != NONE || animals[i].dam != NONE) {
      litters[{animals[i].sire, animals[i].dam}].push_back(i);
    }
  }
  std::string out;
  std::size_t count = 0;
  for (const auto& [parents, offspring] : litters) {
    const std::string dot = "m" + std::to_string(count++);
    const bool doubled = animals[offspring.front()].inbred;
    out += dot + " [shape=point width=0.05 color=\"#555555\"];\n";
    for (const std::size_t parent : {parents.first, parents.second}) {
      if (parent != NONE) {
        out += edge("a" + std::to_string(parent), dot, doubled);
      }
    }
    for (const std::size_t child : offspring) {
      out += edge(dot, "a" + std::to_string(child), false);
    }
  }
  return out;
}

/// The number after a name such as `cx="` in an element; 0 when the element lacks it.
double attribute(const std::string& element, const std::string& name) {
  const std::size_t at = element.find(name);
  return at == std::string::npos ? 0 : std::strtod(element.c_str() + at + name.size(), nullptr);
}

/// The corners of a symbol, from the element that Graphviz draws it with.
struct symbol_box {
  double left, top, right, bottom;
};

symbol_box boxOf(const std::string& element) {
  if (element.starts_with("<ellipse")) {
    const double x = attribute(element, " cx=\"");
    const double y = attribute(element, " cy=\"");
    const double half_width = attribute(element, " rx=\"");
    const double half_height = attribute(element, " ry=\"");
    return {x - half_width, y - half_height, x + half_width, y + half_height};
  }
  symbol_box box{INFINITY, INFINITY, -INFINITY, -INFINITY};
  const std::size_t points = element.find("points=\"");
  const char* at = element.c_str() + (points == std::string::npos ? element.size() : points + 8);
  while (*at != '"' && *at != '\0') {
    char* end = nullptr;
    const double x = std::strtod(at, &end);
    if (end == at || *end != ',') {
      break;
    }
    const double y = std::strtod(end + 1, &end);
    box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
    at = *end == ' ' ? end + 1 : end;
  }
  return box;
}

/// Graphviz has no crossed symbols: a line is drawn over each symbol of the class "dead", below its text.
std::string withSlashes(const std::string& svg) {
  static constexpr char DEAD[] = "class=\"node dead\">";
  std::string out;
  std::size_t from = 0;
  for (std::size_t at = svg.find(DEAD); at != std::string::npos; at = svg.find(DEAD, from)) {
    const std::size_t symbol = std::min(svg.find("<ellipse", at), svg.find("<polygon", at));
    const std::size_t end = symbol == std::string::npos ? svg.size() : svg.find("/>", symbol) + 2;
    out += svg.substr(from, end - from);
    from = end;
    if (symbol == std::string::npos) {
      break;
    }
    const symbol_box box = boxOf(svg.substr(symbol, end - symbol));
    out += "\n<line class=\"slash\" stroke=\"#999999\" x1=\"" + shortestReal(box.left) + "\" y1=\"" +
           shortestReal(box.bottom) + "\" x2=\"" + shortestReal(box.right) + "\" y2=\"" + shortestReal(box.top) +
           "\"/>";
  }
  return out + svg.substr(from);
}

}  // namespace

std::string pedigreeDot(const pedigree_drawing& drawing) {
  std::vector<std::size_t> generation = generations(drawing.animals);
  lowerFounders(drawing.animals, generation);
  std::string out =
      "digraph pedigree {\ngraph [rankdir=TB newrank=true nodesep=0.25 ranksep=0.4 fontname=\"sans-serif\" "
      "fontsize=14 labelloc=t labeljust=l label=" +
      quoted({drawing.title, drawing.subtitle}, "\\l") +
      "];\nnode [fontname=\"sans-serif\" fontsize=10 style=filled margin=\"0.08,0.05\"];\n"
      "edge [arrowhead=none color=\"#555555\"];\n";
  std::map<std::size_t, std::string> rows;
  for (std::size_t i = 0; i < drawing.animals.size(); ++i) {
    out += node(drawing.animals[i], i);
    rows[generation[i]] += " a" + std::to_string(i) + ";";
  }
  for (const auto& [row, places] : rows) {
    out += "{rank=same;" + places + "}\n";
  }
  return out + matings(drawing.animals) + "}\n";
}

std::string drawPedigree(const pedigree_drawing& drawing) {
  return describedSvg(withSlashes(runTool(GRAPHVIZ, {"-Tsvg"}, pedigreeDot(drawing))),
                      drawing.title + ", " + drawing.subtitle, drawing.description);
}

}  // namespace spx::console
