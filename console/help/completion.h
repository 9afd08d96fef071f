#pragma once

#include <string>

namespace CLI {
class App;
}

namespace spx::console {

/// The script by which a shell completes the words of the program. Throws UsageError for a shell
/// other than bash, zsh and fish.
std::string completionScript(const CLI::App& app, const std::string& shell);

}  // namespace spx::console
