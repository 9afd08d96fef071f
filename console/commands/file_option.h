#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace spx::console {

/// Refuses an empty name, which an unset shell variable would give.
inline CLI::Option& requireName(CLI::Option& option) {
  return *option.check([](const std::string& name) { return name.empty() ? "the name is empty" : std::string(); });
}

}  // namespace spx::console
