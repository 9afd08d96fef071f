#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace spx::console {

/// A message about the first word of the command line that is not accepted, with the word that was probably meant;
/// empty when all words were accepted. Requires: the program has parsed the command line.
std::string wrongWordText(const CLI::App& app);

/// The command or group with these words. Throws UsageError for an unknown word, suggesting the nearest one.
const CLI::App& findCommand(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace spx::console
