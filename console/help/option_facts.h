#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace spx::console {

/// An option as the man page and the completions show it.
struct option_facts {
  std::vector<std::string> names;  ///< with their dashes
  std::string value;               ///< its value, such as FILE or "yes|no"; empty for a flag
  std::string help;
  bool of_view = false;  ///< a setting of the view, which many commands take
};

/// The options of a command, without its positional words.
std::vector<option_facts> optionsOf(const CLI::App& app);

/// The positional words of a command as the usage shows them: ID, [WORD...].
std::vector<std::string> positionalsOf(const CLI::App& app);

/// The words that an option accepts: "yes" and "no" for "yes|no"; empty when the value is free text.
std::vector<std::string> choicesOf(const option_facts& option);

/// The program itself, then all of its commands and groups in the order of the help text.
std::vector<const CLI::App*> commandsBelow(const CLI::App& app);

}  // namespace spx::console
