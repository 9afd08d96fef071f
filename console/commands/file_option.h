#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace spx::console {

/// Refuses an empty name, as a variable of the shell leaves it that is not set.
inline CLI::Option& requireName(CLI::Option& option) {
  return *option.check([](const std::string& name) { return name.empty() ? "the name is empty" : std::string(); });
}

}  // namespace spx::console
