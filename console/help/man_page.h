#pragma once

#include <string>

namespace CLI {
class App;
}

namespace spx::console {

/// The man page of the program (section 1), as roff.
std::string manPage(const CLI::App& app);

}  // namespace spx::console
