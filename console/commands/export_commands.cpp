#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>

#include <CLI/CLI.hpp>

#include "spx/analyses/listings.h"
#include "spx/core/animal_data.h"
#include "spx/exports/export_dattrf.h"
#include "spx/exports/export_field.h"
#include "spx/exports/export_pedigree.h"
#include "spx/reports/view_to_r.h"
#include "spx/support/write_file.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/output/animal_records.h"
#include "console/output/output_file.h"
#include "console/output/r_loader.h"
#include "console/output/r_packages.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/studbook/write_tables.h"

namespace spx::console {
namespace {

struct export_options {
  view_choice view;
  output_options output;
  bool monitor = false;
  bool settings = false;
  std::string id_prefix;
  std::string table_kind;
  std::string package;
  std::string separator;
  bool for_spreadsheet = false;
};

std::string pathIn(const std::string& directory, const std::string& file) {
  return directory + "/" + file;
}

/// Opens the studbook and the view, and makes sure that the files may be written.
/// @return their paths
std::vector<std::string> openExport(Session& session, const export_options& options,
                                    const std::vector<std::string>& files) {
  const std::string directory = outputDirectory(session, options.output, &Session::exportDirectory);
  std::vector<std::string> paths;
  for (const std::string& file : files) {
    paths.push_back(pathIn(directory, file));
    checkTarget(options.output, paths.back());
  }
  session.loadStudbook();
  useView(session, options.view);
  return paths;
}

/// The library opens and writes silently; what it could not do is told here.
ExitCode report(bool written, const std::vector<std::string>& paths) {
  if (!written) {
    throw Failure(paths.front() + ": could not be written; a former file is as it was");
  }
  for (const std::string& path : paths) {
    std::cerr << "spx: wrote " << path << "\n";
  }
  return ExitCode::DONE;
}

template <class Export>
ExitCode runExport(Session& session, const export_options& options, const std::vector<std::string>& files,
                   bool (Export::*write)()) {
  const std::vector<std::string> paths = openExport(session, options, files);
  Export table;
  table.setReportDirectory(std::filesystem::path(paths.front()).parent_path().string());
  return report((table.*write)(), paths);
}

bool writeText(const std::string& path, const std::string& text) {
  qs_lib::WriteFile file;
  file.setFileName(path);
  file.setStaged(true);
  if (!file.fileOpen()) {
    return false;
  }
  file.write(text);
  return file.fileClose();
}

ExitCode exportPedigree(Session& session, const export_options& options) {
  return runExport(session, options, {"pedigree.csv"}, &ExportPedigree::exportToR);
}

ExitCode exportFields(Session& session, const export_options& options) {
  return runExport(session, options, {"animal_data.csv"}, &ExportField::exportToR);
}

ExitCode exportDattrf(Session& session, const export_options& options) {
  return runExport(session, options, {"STUDBOOK.DAT", "STUDBOOK.TRF"}, &ExportDattrf::exportData);
}

ExitCode exportView(Session& session, const export_options& options) {
  const std::vector<std::string> paths = openExport(session, options, {"view.R"});
  return report(writeText(paths.front(), viewToR(options.monitor, options.settings)), paths);
}

ExitCode exportLoader(Session& session, const export_options& options) {
  const std::vector<std::string> paths = openExport(session, options, {"load_studbook.R"});
  return report(writeText(paths.front(), viewToR(options.monitor, options.settings) + rLoader()), paths);
}

ExitCode exportFilters(Session& session, const export_options& options) {
  const std::vector<std::string> paths = openExport(session, options, {"filter_test.csv"});
  return report(TestFilters(paths.front()), paths);
}

/// Flags the animals that a listing of the view shows.
void flagListed() {
  for (master_data& animal : Animals.records) {
    inListing(animal);
  }
}

/// Which files there are depends on the IDs.
ExitCode exportR(Session& session, const export_options& options) {
  const std::string directory = outputDirectory(session, options.output, &Session::exportDirectory);
  session.loadStudbook();
  useView(session, options.view);
  flagListed();
  std::vector<std::string> paths;
  const std::vector<package_file> files = packageFiles(options.package);
  for (const package_file& file : files) {
    paths.push_back(pathIn(directory, file.name));
    checkTarget(options.output, paths.back());
  }
  for (std::size_t file = 0; file < files.size(); ++file) {
    if (!writeText(paths[file], files[file].content)) {
      return report(false, {paths[file]});
    }
  }
  return report(true, paths);
}

ExitCode exportAnimals(Session& session, const export_options& options) {
  const std::vector<std::string> paths = openExport(session, options, {"animals.csv"});
  flagListed();
  std::ostringstream table;
  writeAnimals(table, OUTPUT_FORMAT::CSV);
  return report(writeText(paths.front(), table.str()), paths);
}

tables_form formOf(const export_options& options) {
  tables_form form;
  form.id_prefix = options.id_prefix;
  form.as_workbook = options.table_kind == "xlsx";
  if (form.as_workbook && (options.for_spreadsheet || !options.separator.empty())) {
    throw UsageError("--bom and --separator go with --as csv");
  }
  form.csv.for_spreadsheet = options.for_spreadsheet;
  if (!options.separator.empty()) {
    form.csv.separator = options.separator == "semicolon" ? ';' : options.separator == "tab" ? '\t' : ',';
  }
  return form;
}

/// The tables that a studbook file was imported from, with the changes that were made since.
ExitCode exportTables(Session& session, const export_options& options) {
  const std::string directory = outputDirectory(session, options.output, &Session::exportDirectory);
  const std::string studbook = session.studbook();
  const tables_form form = formOf(options);
  std::vector<std::string> paths;
  for (const std::string& file : tableFiles(studbook, form)) {
    paths.push_back(pathIn(directory, file));
    checkTarget(options.output, paths.back());
  }
  writeTables(studbook, directory, form);
  return report(true, paths);
}

using export_function = ExitCode (*)(Session&, const export_options&);

enum class DESCRIBES { TABLES, VIEW, VIEW_BLOCK, R_PACKAGE };

void addTableOptions(CLI::App& app, export_options& options) {
  app.add_option("--drop-id-prefix", options.id_prefix, "Take a text from the beginning of the IDs")->type_name("TEXT");
  app.add_option("--as", options.table_kind, "CSV files (default), or a workbook with a sheet for each table")
      ->check(CLI::IsMember({"csv", "xlsx"}))
      ->type_name("csv|xlsx");
  app.add_option("--separator", options.separator, "What stands between the cells of CSV files")
      ->check(CLI::IsMember({"comma", "semicolon", "tab"}))
      ->type_name("comma|semicolon|tab");
  app.add_flag("--bom", options.for_spreadsheet,
               "CSV for a spreadsheet: with a byte-order mark, and an apostrophe before what it would take for a "
               "formula");
}

command exportCommand(const char* name, const char* help, export_function run, DESCRIBES describes = DESCRIBES::VIEW) {
  const auto options = std::make_shared<export_options>();
  return {name, help, [options, run](Session& session) { return run(session, *options); },
          [options, run, describes](CLI::App& app) {
            addOutputOptions(app, options->output);
            if (describes == DESCRIBES::VIEW_BLOCK) {
              app.add_flag("--by-monitor-date", options->monitor, "Describe the monitor date instead of the period");
              app.add_flag("--analysis-settings", options->settings, "Describe the settings of the analyses");
            }
            if (describes == DESCRIBES::R_PACKAGE) {
              const std::set<std::string> packages(rPackages().begin(), rPackages().end());
              app.add_option("--for", options->package, "The program that is to read the files")
                  ->required()
                  ->check(CLI::IsMember(packages))
                  ->type_name("PACKAGE");
            }
            if (describes == DESCRIBES::TABLES) {
              addTableOptions(app, *options);
            } else {
              addViewOptions(app, options->view, WHOLE_VIEW);
            }
          }};
}

}  // namespace

void addExportCommands(std::vector<command>& commands) {
  CommandGroup group("export", "Write tables for R and other programs");
  group.add(exportCommand("pedigree", "pedigree.csv: a row per animal with its parents", exportPedigree));
  group.add(exportCommand("animals", "animals.csv: everything about each animal of the view", exportAnimals));
  group.add(exportCommand("r", "The pedigree of the view for an R package or PLINK, with a script", exportR,
                          DESCRIBES::R_PACKAGE));
  group.add(exportCommand("fields",
                          "animal_data.csv: every field of the animals of the view that "
                          "died or were lost in its period",
                          exportFields));
  group.add(exportCommand("dattrf", "STUDBOOK.DAT and STUDBOOK.TRF: fixed-width files", exportDattrf));
  group.add(exportCommand("view", "view.R: the view as comments for the head of an R script", exportView,
                          DESCRIBES::VIEW_BLOCK));
  group.add(exportCommand("r-loader", "load_studbook.R: reads the exported tables in R", exportLoader,
                          DESCRIBES::VIEW_BLOCK));
  group.add(exportCommand("filters",
                          "filter_test.csv: the answer of every predicate for every "
                          "animal",
                          exportFilters));
  group.add(exportCommand("tables", "The tables of a studbook file, as CSV files or a workbook", exportTables,
                          DESCRIBES::TABLES));
  commands.push_back(group.asCommand());
}

}  // namespace spx::console
