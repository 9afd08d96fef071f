#pragma once

#include <functional>
#include <string>
#include <vector>

#include "console/exit_code.h"

namespace CLI {
class App;
}

namespace spx::console {

/// One word that the program obeys. The studbook is loaded before `run` is called; results go to
/// standard output, everything else to standard error. `run` may throw Failure and UsageError.
struct command {
  std::string name;
  std::string help;  ///< one line
  std::function<ExitCode()> run;
  std::function<void(CLI::App&)> add_options = [](CLI::App&) {};
};

/// All commands in the order of the help text: one function per family, below.
std::vector<command> allCommands();

void addStudbookCommands(std::vector<command>& commands);  ///< check, summary, info
void addRegistryCommands(std::vector<command>& commands);  ///< locations, taxa, programs, ...
void addFilterCommands(std::vector<command>& commands);    ///< filters

}  // namespace spx::console
