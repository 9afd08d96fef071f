#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/output/output_file.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"

namespace spx::console {
namespace {

constexpr char TABLE[] = "filter_test.csv";

struct filter_options {
  output_options output;
  view_choice view;
};

ExitCode writeFilters(Session& session, filter_options options) {
  if (!session.hasProject() && options.output.directory.empty()) {
    options.output.directory = ".";
  }
  const std::string path = outputDirectory(session, options.output, &Session::exportDirectory) + "/" + TABLE;
  checkTarget(options.output, path);
  session.loadStudbook();
  useView(session, options.view);
  if (!TestFilters(path)) {
    throw Failure(path + ": could not be written");
  }
  std::cerr << "spx: wrote " << path << "\n";
  return ExitCode::DONE;
}

}  // namespace

void addFilterCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<filter_options>();
  commands.push_back({"filters", "Write the result of every predicate for every animal",
                      [options](Session& session) { return writeFilters(session, *options); },
                      [options](CLI::App& app) {
                        addOutputOptions(app, options->output);
                        addViewOptions(app, options->view, VIEW_OF_PREDICATES);
                      }});
}

}  // namespace spx::console
