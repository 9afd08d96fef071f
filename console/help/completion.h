#pragma once

#include <string>

namespace CLI {
class App;
}

namespace spx::console {

/// The script with which a shell completes the program's commands and options. Throws UsageError
/// for a shell other than bash, zsh and fish.
std::string completionScript(const CLI::App& app, const std::string& shell);

}  // namespace spx::console
