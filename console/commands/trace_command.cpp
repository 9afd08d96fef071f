#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/analyses/trace_parents.h"
#include "spx/project/biology.h"
#include "spx/support/file_name.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/base/assignment.h"
#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/output/output_file.h"
#include "console/project/life_history.h"
#include "console/project/view_animals.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/studbook/loading_output.h"

namespace spx::console {
namespace {

struct trace_options {
  view_choice view;
  output_options output;
  std::vector<std::string> parameters;
  std::uint64_t most = 0;
};

/// Warns when the report will be large.
void announceSize(std::uint64_t candidates) {
  constexpr double BYTES_PER_CANDIDATE = 129;  // measured on three studbooks; long names of places add to it
  constexpr std::uint64_t MANY = 100000;
  if (candidates < MANY) {
    return;
  }
  const std::string megabytes = qs_lib::realToString(static_cast<double>(candidates) * BYTES_PER_CANDIDATE / 1e6, 0);
  std::cerr << "spx: " << candidates << " possible parents; the report will take about " << megabytes
            << " MB (--most-candidates N lists at most N for each animal and parent)\n";
}

void setParameters(const trace_options& options) {
  for (const std::string& text : options.parameters) {
    const assignment parameter = splitAssignment(text, "KEY=VALUE", "--life-history");
    setLifeHistory(parameter.name, parameter.value);
  }
  checkReproductiveAges();
  if (lacksReproductiveAges()) {
    throw Failure(
        "the life history has no reproductive ages, so no animal can be a parent; set them in days, for example: "
        "spx life-history set male-reproductive-lower=730 male-reproductive-upper=5475 "
        "female-reproductive-lower=730 female-reproductive-upper=4380");
  }
}

void printCount(const char* label, std::uint64_t count) {
  std::cout << label << count << "\n";
}

void printCounts(const TraceParents& analysis, const std::string& report) {
  printCount("Only sire unknown    : ", analysis.sire_only);
  printCount("Only dam unknown     : ", analysis.dam_only);
  printCount("Both parents unknown : ", analysis.both_parents);
  printCount("Sire in group        : ", analysis.multi_sire);
  printCount("Dam in group         : ", analysis.multi_dam);
  std::cout << "Report               : " << report << "\n";
}

ExitCode traceParents(Session& session, const trace_options& options) {
  const std::string directory = outputDirectory(session, options.output, &Session::reportDirectory);
  session.loadStudbook();
  useView(session, options.view);
  setParameters(options);
  TraceParents analysis;
  const std::string report = directory + "/" + analysis.fileStem() + "-" + getEnumName(View.sex) + ".xml";
  checkTarget(options.output, report);
  analysis.setReportDirectory(directory);
  if (!analysis.initialize()) {
    return ExitCode::FAILED;
  }
  if (!viewText(false).empty()) {
    analysis.chooseRecords(chosenRecords(animalsOfView()));
  }
  analysis.setMostCandidates(options.most);
  {
    const LoadingOutput progress("Tracing parents");
    announceSize(analysis.countCandidates());
    analysis.trace();
  }
  if (!analysis.isReportWritten()) {
    throw Failure(report + ": could not be written");
  }
  printCounts(analysis, report);
  return ExitCode::DONE;
}

}  // namespace

void addTraceCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<trace_options>();
  commands.push_back({"trace-parents", "List the possible parents of animals whose parents are unknown",
                      [options](Session& session) { return traceParents(session, *options); },
                      [options](CLI::App& app) {
                        addOutputOptions(app, options->output);
                        app.add_option("--life-history", options->parameters,
                                       "A parameter for this run (spx life-history set --help "
                                       "lists them)")
                            ->type_name("KEY=VALUE")
                            ->allow_extra_args(false);
                        app.add_option("--most-candidates", options->most,
                                       "List at most this many possible sires and dams for each animal")
                            ->type_name("COUNT");
                        addViewOptions(app, options->view, VIEW_RECORDS | VIEW_PLACES | VIEW_PERIOD);
                      }});
}

}  // namespace spx::console
