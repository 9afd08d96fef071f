#pragma once

#include <string>

#include "spx/support/export.h"

namespace spx {

/// One comment line of an R script: "# ", the label padded to a width, ": ", the value and a line
/// feed. Line breaks inside become blanks, so that it stays one comment whatever names hold.
/// @param width  in characters; a longer label is written whole
SPX_EXPORT std::string writeComment(const std::string& label, const std::string& value, int width);

/// The active view and the studbook as a block of R comments between lines of "###", for the head
/// of a script.
///
/// The upper age stands under the label "Upper generation number", where scripts look for it.
/// @param monitor   the monitor date instead of the period
/// @param settings  the settings of the analyses; without them and without `monitor` the census
///                  is written, so that settings and census never stand together
SPX_EXPORT std::string viewToR(bool monitor, bool settings);

}  // namespace spx
