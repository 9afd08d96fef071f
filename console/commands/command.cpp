#include "console/commands/command.h"

namespace spx::console {

std::vector<command> allCommands() {
  std::vector<command> commands;
  addCheckCommands(commands);
  addStudbookCommands(commands);
  addImportCommands(commands);
  addLifeCommands(commands);
  addEditCommands(commands);
  addLogCommand(commands);
  addHistoryCommands(commands);
  addDiffCommand(commands);
  addListingCommands(commands);
  addGeneticsCommands(commands);
  addRegistryCommands(commands);
  addDemographyCommands(commands);
  addProjectCommands(commands);
  addViewCommands(commands);
  addLifeHistoryCommands(commands);
  addTraceCommands(commands);
  addExportCommands(commands);
  addReportCommands(commands);
  addDrawCommands(commands);
  addFilterCommands(commands);
  return commands;
}

}  // namespace spx::console
