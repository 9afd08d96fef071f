#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <numeric>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/output/column_table.h"
#include "console/output/staged_files.h"
#include "console/studbook/column_mapping.h"
#include "console/studbook/import_studbook.h"
#include "console/studbook/load_studbook.h"
#include "console/studbook/open_tables.h"

namespace spx::console {
namespace {

struct import_options {
  std::string animals;
  std::string id_prefix;
  bool placeholders = false;
  bool dry_run = false;
};

/// Animals that are placeholders by their IDs show in no list: the keeper has to want that.
void refusePlaceholders(const import_options& options, const loading_notes& notes) {
  if (options.placeholders || notes.placeholders.empty()) {
    return;
  }
  std::string names;
  for (const position animal : notes.placeholders) {
    names += (names.empty() ? "" : ", ") + quotedText(Animals.records[animal].stud_id) + " (line " +
             std::to_string(notes.lineOf(animal)) + ")";
  }
  const bool is_one = notes.placeholders.size() == 1;
  throw Failure(notes.animals_table + ": " + std::to_string(notes.placeholders.size()) +
                (is_one ? " animal is treated as a placeholder because of its ID, and no list would show it: "
                        : " animals are treated as placeholders because of their IDs, and no list would show them: ") +
                names +
                "\nGive every ID a prefix with --id-prefix TEXT, or accept the placeholders with --placeholders; "
                "nothing was written");
}

void printCount(const char* what, std::size_t count) {
  std::cout << std::left << std::setw(18) << what << count << "\n";
}

std::size_t countLocations() {
  std::size_t count = 0;
  for (std::size_t level = 0; level < MetaPop.levels().size(); ++level) {
    count += MetaPop.getNumberOfMembers(level);
  }
  return count;
}

void reportLoaded() {
  std::size_t animals = 0;
  std::size_t events = 0;
  for (const master_data& animal : Animals.records) {
    animals += hasRow(animal) ? 1 : 0;
    events += animal.moves.size();
  }
  printCount("animals", animals);
  printCount("events", events);
  printCount("locations", countLocations());
  printCount("programmes", Management.programs().size());
  printCount("pseudo founders", Animals.records.size() - animals);
  printCount("inconsistencies", Animals.inconsistencies.size());
}

/// How the columns were understood; and keeps that for the next time where that was asked for.
void reportColumns(const Session& session, const studbook_tables& tables, const studbook_files& files) {
  if (!tables.notes) {
    return;
  }
  showColumns(std::cout, *tables.notes);
  const std::string mapping = session.newMapping();
  if (!mapping.empty()) {
    writeMapping(mapping, tables.notes->of(tables.animals.name), files.reading);
    std::cerr << "spx: wrote " << mapping << "; --mapping reads the next table in the same way\n";
  }
}

ExitCode import(Session& session, const import_options& options) {
  const std::string target = options.dry_run ? std::string() : session.importTarget();
  session.useIdPrefix(options.id_prefix);
  const studbook_files files = session.filesBeside(options.animals);
  const studbook_tables tables = openTables(files);
  if (options.dry_run) {
    refusePlaceholders(options, loadStudbook(tables));
    reportColumns(session, tables, files);
    reportLoaded();
    return ExitCode::DONE;
  }
  removeStagedWhenEnded(std::filesystem::path(target).parent_path().string());
  NewStudbook book(target);
  refusePlaceholders(options, loadStudbook(book.copying(tables)));
  const bool replaced = book.finish();
  reportColumns(session, tables, files);
  reportLoaded();
  std::cout.flush();
  std::cerr << "spx: wrote " << target << "\n";
  if (replaced) {
    std::cerr << "spx: the former studbook is kept as " << target << ".bak\n";
  }
  return ExitCode::DONE;
}

}  // namespace

void addImportCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<import_options>();
  commands.push_back(
      {"import", "Make a studbook file from tables", [options](Session& session) { return import(session, *options); },
       [options](CLI::App& app) {
         app.add_option("ANIMALS", options->animals,
                        "Table of animals (CSV, .xlsx, .ods), or a directory with animals.csv and the others")
             ->required();
         app.add_option("--id-prefix", options->id_prefix, "Put a text before every ID")->type_name("TEXT");
         app.add_flag("--placeholders", options->placeholders, "Accept animals that are placeholders by their IDs");
         app.add_flag("--dry-run", options->dry_run, "Read and report, but write nothing");
       }});
}

}  // namespace spx::console
