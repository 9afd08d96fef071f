#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace spx::console {

/// Reports the first word of the command line that nothing takes, and which one was probably
/// meant. The program must have parsed the line; empty when every word was taken.
std::string wrongWordText(const CLI::App& app);

/// The command or group of these words. Throws UsageError with the nearest for an unknown word.
const CLI::App& findCommand(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace spx::console
