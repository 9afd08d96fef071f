#pragma once

#include <string>

#include "spx/support/export.h"

namespace spx {

/// One comment line of an R script: "# ", the label padded to a width, ": ", the value and a line
/// feed. Line breaks in label and value become blanks, so that the comment stays on one line.
/// @param width  in characters; a longer label is written whole
SPX_EXPORT std::string writeComment(const std::string& label, const std::string& value, int width);

/// The active view and the studbook as a block of R comments between lines of "###", for the head
/// of a script.
///
/// The upper age has the label "Upper generation number"; kept on purpose.
/// @param monitor   the monitor date instead of the period
/// @param settings  the settings of the analyses. The census is written when neither this nor
///                  `monitor` is set.
SPX_EXPORT std::string viewToR(bool monitor, bool settings);

}  // namespace spx
