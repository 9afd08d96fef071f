#pragma once

#include <functional>
#include <string>
#include <vector>

#include "console/base/exit_code.h"
#include "console/project/session.h"

namespace CLI {
class App;
}

namespace spx::console {

/// One command of the program, or a group of commands. Results go to standard output, everything
/// else to standard error. `run` opens what it needs through the session, and may throw Failure and
/// UsageError.
struct command {
  std::string name;
  std::string help;  ///< one line
  std::function<ExitCode(Session&)> run;
  std::function<void(CLI::App&)> add_options = [](CLI::App&) {};
  std::vector<command> words = {};  ///< of a group: its commands, one of which must follow
};

/// Builds a group of commands, such as `project create`.
class CommandGroup {
 public:
  CommandGroup(std::string name, std::string help) : group_{std::move(name), std::move(help), {}} {}
  void add(command word) { group_.words.push_back(std::move(word)); }
  command asCommand() const { return group_; }

 private:
  command group_;
};

/// All commands in the order of the help text: one function per family, below.
std::vector<command> allCommands();

void addCheckCommands(std::vector<command>& commands);        ///< check
void addStudbookCommands(std::vector<command>& commands);     ///< summary, info
void addImportCommands(std::vector<command>& commands);       ///< import
void addLifeCommands(std::vector<command>& commands);         ///< birth, death, transfer, loss
void addEditCommands(std::vector<command>& commands);         ///< animal ..., event ..., location ..., field ...
void addHistoryCommands(std::vector<command>& commands);      ///< undo, redo, restore
void addDiffCommand(std::vector<command>& commands);          ///< diff
void addLogCommand(std::vector<command>& commands);           ///< log
void addListingCommands(std::vector<command>& commands);      ///< list, living, offspring, ...
void addGeneticsCommands(std::vector<command>& commands);     ///< genetics, inbreeding, kinship, ...
void addRegistryCommands(std::vector<command>& commands);     ///< locations, taxa, programs, ...
void addDemographyCommands(std::vector<command>& commands);   ///< census, survival, life-table, growth, ...
void addProjectCommands(std::vector<command>& commands);      ///< project ...
void addViewCommands(std::vector<command>& commands);         ///< view ...
void addLifeHistoryCommands(std::vector<command>& commands);  ///< life-history ...
void addTraceCommands(std::vector<command>& commands);        ///< trace-parents
void addExportCommands(std::vector<command>& commands);       ///< export ...
void addFilterCommands(std::vector<command>& commands);       ///< filters
void addDrawCommands(std::vector<command>& commands);         ///< draw ...
void addReportCommands(std::vector<command>& commands);       ///< report

}  // namespace spx::console
