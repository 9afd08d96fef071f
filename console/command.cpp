#include "console/command.h"

namespace spx::console {

std::vector<command> allCommands() {
  std::vector<command> commands;
  addStudbookCommands(commands);
  addRegistryCommands(commands);
  addFilterCommands(commands);
  return commands;
}

}  // namespace spx::console
