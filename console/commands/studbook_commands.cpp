#include <memory>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"

#include "console/commands/command.h"
#include "console/output/table_options.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/results/population_summary.h"

namespace spx::console {
namespace {

struct summary_options {
  view_choice view;
  table_options table;
};

ExitCode summary(Session& session, const summary_options& options) {
  session.loadStudbook();
  useView(session, options.view);
  const population_summary counted = summarise();
  showTable(options.table.format == OUTPUT_FORMAT::TEXT ? summaryPage(counted) : summaryRecord(counted), options.table);
  return ExitCode::DONE;
}

ExitCode info(Session& session) {
  session.loadStudbook();
  Animals.info();
  return ExitCode::DONE;
}

}  // namespace

void addStudbookCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<summary_options>();
  commands.push_back({"summary", "Summarise the studbook: numbers, parentage, dates, ages",
                      [options](Session& session) { return summary(session, *options); },
                      [options](CLI::App& app) {
                        addFormatOptions(app, options->table);
                        addViewOptions(app, options->view,
                                       VIEW_RECORDS | VIEW_PLACES | VIEW_PERIOD | VIEW_DAY | VIEW_LIVES);
                      }});
  commands.push_back({"info", "Show how much room the records take", info});
}

}  // namespace spx::console
