#pragma once

#include <string>

namespace spx::console {

/// Writes the library's table of predicates under a path. It takes its place when it is complete; a
/// former file stays otherwise. Throws Failure.
void writeFilterTable(const std::string& path);

}  // namespace spx::console
