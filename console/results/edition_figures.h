#pragma once

#include <string>
#include <vector>

#include "console/studbook/source_files.h"

namespace spx::console {

/// A figure of a studbook as text, such as "living" and "41".
struct studbook_figure {
  std::string name;
  std::string text;
};

/// The counts and the genetic state of a studbook today: animals, living, founders of the living, their mean inbreeding
/// and gene diversity. Loads it without messages, and drops it again. Throws Failure when it cannot
/// be loaded or its parents form a cycle.
std::vector<studbook_figure> figuresOf(const studbook_files& files);

}  // namespace spx::console
