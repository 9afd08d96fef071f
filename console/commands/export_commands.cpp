#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"
#include "spx/exports/export_dattrf.h"
#include "spx/exports/export_field.h"
#include "spx/exports/export_pedigree.h"
#include "spx/reports/view_to_r.h"
#include "spx/support/write_file.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/output/animal_table.h"
#include "console/output/output_file.h"
#include "console/output/r_loader.h"
#include "console/output/r_packages.h"
#include "console/project/view_animals.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/studbook/record_genetics.h"
#include "console/studbook/write_tables.h"
#include "console/tables/loading_notes.h"

namespace spx::console {
namespace {

struct export_options {
  view_choice view;
  output_options output;
  bool monitor = false;
  bool settings = false;
  std::string id_prefix;
  bool with_ancestors = false;
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
  computeRecordGenetics();
  return paths;
}

[[noreturn]] void failToWrite(const std::string& path) {
  throw Failure(path + ": could not be written; an existing file is unchanged");
}

/// Names the files that were written; throws Failure naming the first one when writing failed.
ExitCode report(bool written, const std::vector<std::string>& paths) {
  if (!written) {
    failToWrite(paths.front());
  }
  for (const std::string& path : paths) {
    std::cerr << "spx: wrote " << path << "\n";
  }
  return ExitCode::DONE;
}

/// Flags the animals and all their ancestors, by record.
std::vector<bool> withAncestors(std::vector<position> animals) {
  std::vector<bool> chosen = chosenRecords(animals);
  std::vector<const pedigree_record*> entries(Animals.records.size());
  for (const pedigree_record& entry : Animals.pedigree) {
    entries[entry.animal] = &entry;
  }
  while (!animals.empty()) {
    const pedigree_record* entry = entries[animals.back()];
    animals.pop_back();
    for (const position parent : {entry == nullptr ? 0 : entry->sire, entry == nullptr ? 0 : entry->dam}) {
      if (entry != nullptr && !chosen[parent]) {
        chosen[parent] = true;
        animals.push_back(parent);
      }
    }
  }
  return chosen;
}

/// Sets the animals of an analysis and its directory.
void prepare(Analysis& analysis, const export_options& options, const std::vector<std::string>& paths) {
  if (!viewText(false).empty()) {
    analysis.chooseRecords(options.with_ancestors ? withAncestors(animalsOfView()) : chosenRecords(animalsOfView()));
  }
  analysis.setReportDirectory(std::filesystem::path(paths.front()).parent_path().string());
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
  const std::vector<std::string> paths = openExport(session, options, {"pedigree.csv"});
  ExportPedigree table;
  prepare(table, options, paths);
  return report(table.exportToR(), paths);
}

ExitCode exportFields(Session& session, const export_options& options) {
  const std::vector<std::string> paths = openExport(session, options, {"animal_data.csv"});
  ExportField table;
  prepare(table, options, paths);
  const ExitCode result = report(table.exportToR(), paths);
  if (table.exportedAnimals() == 0) {
    std::cerr << "spx: the table is empty: no animal of the view died or was lost between "
              << qs_lib::julianToISO(qs_lib::dayToMs(View.start_date)) << " and "
              << qs_lib::julianToISO(qs_lib::dayToMs(View.end_date)) << "\n";
  }
  return result;
}

ExitCode exportDattrf(Session& session, const export_options& options) {
  const std::vector<std::string> paths = openExport(session, options, {"STUDBOOK.DAT", "STUDBOOK.TRF"});
  ExportDattrf table;
  prepare(table, options, paths);
  if (!table.exportData()) {
    failToWrite(table.failedFile());
  }
  return report(true, paths);
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

/// Sets the `print` flags for the animals of the view that have a row in the tables; placeholders have none.
void flagAnimalsOfView() {
  for (master_data& animal : Animals.records) {
    animal.print = false;
  }
  for (const position animal : animalsOfView()) {
    Animals.records[animal].print = hasRow(Animals.records[animal]);
  }
}

/// The names of the files depend on the IDs, so they are known only after the pedigree was prepared.
ExitCode exportR(Session& session, const export_options& options) {
  const std::string directory = outputDirectory(session, options.output, &Session::exportDirectory);
  session.loadStudbook();
  useView(session, options.view);
  flagAnimalsOfView();
  std::vector<std::string> paths;
  const std::vector<package_file> files = packageFiles(options.package);
  for (const package_file& file : files) {
    paths.push_back(pathIn(directory, file.name));
    checkTarget(options.output, paths.back());
  }
  for (std::size_t file = 0; file < files.size(); ++file) {
    if (!writeText(paths[file], files[file].content)) {
      failToWrite(paths[file]);
    }
  }
  return report(true, paths);
}

ExitCode exportAnimals(Session& session, const export_options& options) {
  const std::vector<std::string> paths = openExport(session, options, {"animals.csv"});
  const Table animals = animalTable(animalsOfView(), ANIMAL_LIST::ALL);
  std::ostringstream table;
  writeCsv(table, animals, wholeTable(animals, OUTPUT_FORMAT::CSV), true);
  return report(writeText(paths.front(), table.str()), paths);
}

tables_form formOf(const export_options& options) {
  tables_form form;
  form.id_prefix = options.id_prefix;
  form.as_workbook = options.table_kind == "xlsx";
  if (form.as_workbook && (options.for_spreadsheet || !options.separator.empty())) {
    throw UsageError("--bom and --separator can only be used with --as csv");
  }
  form.csv.for_spreadsheet = options.for_spreadsheet;
  if (!options.separator.empty()) {
    form.csv.separator = options.separator == "semicolon" ? ';' : options.separator == "tab" ? '\t' : ',';
  }
  return form;
}

/// Removes files of tables that the studbook does not have: next to the written files they would be
/// read as part of it.
void removeForeignTables(const std::vector<std::string>& foreign) {
  for (const std::string& path : foreign) {
    std::error_code failed;
    if (std::filesystem::remove(path, failed)) {
      std::cerr << "spx: removed " << path << ": the studbook has no such table\n";
    } else if (failed) {
      throw Failure(path + " does not belong to this studbook and cannot be removed: " + failed.message());
    }
  }
}

/// Exports the tables from which a studbook file was imported, with all changes since then.
ExitCode exportTables(Session& session, const export_options& options) {
  const std::string directory = outputDirectory(session, options.output, &Session::exportDirectory);
  const std::string studbook = session.writableStudbook();
  const tables_form form = formOf(options);
  const std::vector<std::string> own = tableFiles(studbook, form);
  std::vector<std::string> paths;
  std::vector<std::string> foreign;
  for (const std::string& file : form.as_workbook ? own : possibleTableFiles()) {
    const std::string path = pathIn(directory, file);
    checkTarget(options.output, path);
    (std::find(own.begin(), own.end(), file) == own.end() ? foreign : paths).push_back(path);
  }
  writeTables(studbook, directory, form);
  removeForeignTables(foreign);
  return report(true, paths);
}

using export_function = ExitCode (*)(Session&, const export_options&);

/// The part of a view that an export uses.
enum class TAKES : std::uint8_t { NO_VIEW, ANIMALS, ANIMALS_WITH_ANCESTORS, PREDICATES, VIEW_BLOCK };

void addTableOptions(CLI::App& app, export_options& options) {
  app.add_option("--drop-id-prefix", options.id_prefix, "Remove this prefix from the IDs")->type_name("TEXT");
  app.add_option("--as", options.table_kind, "CSV files (default), or a workbook with a sheet for each table")
      ->check(CLI::IsMember({"csv", "xlsx"}))
      ->type_name("csv|xlsx");
  app.add_option("--separator", options.separator, "The separator between the cells of CSV files")
      ->check(CLI::IsMember({"comma", "semicolon", "tab"}))
      ->type_name("comma|semicolon|tab");
  app.add_flag("--bom", options.for_spreadsheet,
               "CSV for a spreadsheet: with a byte-order mark, and an apostrophe before cells that it would take for "
               "formulas");
}

command exportCommand(const char* name, const char* help, export_function run, TAKES takes = TAKES::ANIMALS) {
  const auto options = std::make_shared<export_options>();
  return {name, help, [options, run](Session& session) { return run(session, *options); },
          [options, run, takes](CLI::App& app) {
            addOutputOptions(app, options->output);
            if (takes == TAKES::VIEW_BLOCK) {
              app.add_flag("--by-monitor-date", options->monitor, "Describe the monitor date instead of the period");
              app.add_flag("--analysis-settings", options->settings, "Describe the settings of the analyses");
            }
            if (run == exportTables) {
              addTableOptions(app, *options);
            }
            if (run == exportR) {
              const std::set<std::string> packages(rPackages().begin(), rPackages().end());
              app.add_option("--for", options->package, "The program that will read the files")
                  ->required()
                  ->check(CLI::IsMember(packages))
                  ->type_name("PACKAGE");
            }
            if (takes == TAKES::ANIMALS_WITH_ANCESTORS) {
              app.add_flag("--with-ancestors", options->with_ancestors,
                           "Also the ancestors of the animals of the view");
            }
            if (takes != TAKES::NO_VIEW) {
              const unsigned parts = takes == TAKES::VIEW_BLOCK   ? unsigned{WHOLE_VIEW}
                                     : takes == TAKES::PREDICATES ? unsigned{VIEW_OF_PREDICATES}
                                                                  : VIEW_RECORDS | VIEW_PLACES | VIEW_PERIOD;
              addViewOptions(app, options->view, parts);
            }
          }};
}

}  // namespace

void addExportCommands(std::vector<command>& commands) {
  CommandGroup group("export", "Write tables for R and other programs");
  group.add(exportCommand("pedigree", "pedigree.csv: a row per animal with its parents", exportPedigree,
                          TAKES::ANIMALS_WITH_ANCESTORS));
  group.add(exportCommand("animals", "animals.csv: everything about each animal of the view", exportAnimals));
  group.add(exportCommand("r", "The pedigree of the view for an R package or PLINK, with a script", exportR));
  group.add(exportCommand("fields",
                          "animal_data.csv: every field of the animals of the view that "
                          "died or were lost in its period",
                          exportFields));
  group.add(exportCommand("dattrf", "STUDBOOK.DAT and STUDBOOK.TRF: fixed-width files", exportDattrf));
  group.add(
      exportCommand("view", "view.R: the view as comments for the top of an R script", exportView, TAKES::VIEW_BLOCK));
  group.add(
      exportCommand("r-loader", "load_studbook.R: reads the exported tables in R", exportLoader, TAKES::VIEW_BLOCK));
  group.add(exportCommand("filters",
                          "filter_test.csv: the result of every predicate for every "
                          "animal",
                          exportFilters, TAKES::PREDICATES));
  group.add(exportCommand("tables", "The tables of a studbook file, as CSV files or a workbook", exportTables,
                          TAKES::NO_VIEW));
  commands.push_back(group.asCommand());
}

}  // namespace spx::console
