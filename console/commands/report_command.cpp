#include <memory>

#include <CLI/CLI.hpp>

#include "console/commands/command.h"
#include "console/commands/undated_option.h"
#include "console/output/result_output.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/report/studbook_report.h"
#include "console/results/demography_notes.h"
#include "console/studbook/record_genetics.h"

namespace spx::console {
namespace {

struct report_options {
  view_choice view;
  report_choice choice;
  result_options output;
};

ExitCode report(Session& session, report_options& options) {
  session.loadStudbook();
  computeRecordGenetics();
  useView(session, options.view);
  endWithStudbook();
  options.choice.studbook = session.studbookName();
  ResultOutput output(options.output, false);
  output.stream() << studbookReport(options.choice);
  output.finish();
  return ExitCode::DONE;
}

}  // namespace

void addReportCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<report_options>();
  commands.push_back({"report", "Write the yearly report as one page for a browser",
                      [options](Session& session) { return report(session, *options); },
                      [options](CLI::App& app) {
                        addResultOptions(app, options->output);
                        app.add_option("--title", options->choice.title, "The title of the page");
                        app.add_option("--logo", options->choice.logo, "An image at the top: a PNG, JPEG or SVG file")
                            ->type_name("FILE");
                        std::string names;
                        for (const std::string& name : reportSections()) {
                          names += (names.empty() ? "" : ", ") + name;
                        }
                        app.add_option("--sections", options->choice.sections,
                                       "Only these sections, separated by commas: " + names)
                            ->delimiter(',')
                            ->type_name("LIST");
                        app.add_flag("--cards", options->choice.cards,
                                     "Show the ancestors of each living animal, up to the great-grandparents");
                        app.add_option("--gene-drops", options->choice.gene_drops, "Runs for the founders' retention")
                            ->check(CLI::Range(1, 1000000))
                            ->capture_default_str();
                        addUndatedOption(app, options->choice.basis.undated);
                        addViewOptions(app, options->view, WHOLE_VIEW & ~(VIEW_PARENTS | VIEW_WORDS));
                      }});
}

}  // namespace spx::console
