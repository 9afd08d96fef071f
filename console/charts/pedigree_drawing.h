#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "spx/core/enumerations.h"

namespace spx::console {

/// One symbol of a drawn pedigree: a square for a male, a circle for a female, a diamond otherwise.
struct drawn_animal {
  static constexpr std::size_t NONE = std::numeric_limits<std::size_t>::max();

  std::vector<std::string> lines;  ///< written in the symbol, any texts; the first is the ID
  SEX sex = SEX::UNKNOWN;
  bool dead = false;                                        ///< crossed out by a slash
  bool marked = false;                                      ///< the animal whose pedigree it is: a thicker outline
  bool inbred = false;                                      ///< its parents are related: a double line joins them
  double shade = std::numeric_limits<double>::quiet_NaN();  ///< from 0 (white) to 1 (dark); NaN: white
  std::size_t sire = NONE;                                  ///< a place among the animals
  std::size_t dam = NONE;                                   ///< likewise
};

/// A pedigree to draw: each animal once, in any order. The parents of an animal are drawn above it, so a cycle cannot
/// be drawn.
struct pedigree_drawing {
  std::string title;
  std::string subtitle;
  std::string description;
  std::vector<drawn_animal> animals;
};

/// The description of the drawing that Graphviz reads, with a row for each generation.
/// Throws Failure when an animal is its own ancestor.
std::string pedigreeDot(const pedigree_drawing& drawing);

/// The drawing as an SVG picture; its texts stay texts. Throws Failure likewise, and when Graphviz is missing or fails.
std::string drawPedigree(const pedigree_drawing& drawing);

}  // namespace spx::console
