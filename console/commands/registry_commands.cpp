#include <memory>

#include <CLI/CLI.hpp>

#include "console/commands/command.h"
#include "console/output/table_options.h"
#include "console/project/view_settings.h"
#include "console/results/registry_tables.h"

namespace spx::console {
namespace {

void addRegistry(std::vector<command>& commands, const char* name, const char* help, Table (*make)()) {
  const auto options = std::make_shared<table_options>();
  const auto run = [options, make](Session& session) {
    session.loadStudbook();
    setStartView();
    showTable(make(), *options);
    return ExitCode::DONE;
  };
  commands.push_back({name, help, run, [options](CLI::App& app) { addTableOptions(app, *options); }});
}

}  // namespace

void addRegistryCommands(std::vector<command>& commands) {
  addRegistry(commands, "locations", "List the locations", locationTable);
  addRegistry(commands, "taxa", "List the taxa", taxonTable);
  addRegistry(commands, "programs", "List the breeding programmes", programTable);
  addRegistry(commands, "user-fields", "List the user-defined fields", userFieldTable);
}

}  // namespace spx::console
