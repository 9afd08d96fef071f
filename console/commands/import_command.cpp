#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <memory>
#include <numeric>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"
#include "spx/core/pseudo_ids.h"
#include "spx/core/sub_taxa.h"
#include "spx/core/user_fields.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/commands/edit_run.h"
#include "console/commands/file_option.h"
#include "console/edits/update_studbook.h"
#include "console/output/column_table.h"
#include "console/output/staged_files.h"
#include "console/studbook/column_mapping.h"
#include "console/studbook/file_rows.h"
#include "console/studbook/import_studbook.h"
#include "console/studbook/load_studbook.h"
#include "console/studbook/open_tables.h"
#include "console/studbook/studbook_file.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

struct import_options {
  std::string animals;
  std::string id_prefix;
  bool placeholders = false;
  bool replace = false;
  bool ours = false;
  bool theirs = false;
  edit_options edit;
};

/// Animals whose IDs make them placeholders are in no list, so the keeper has to accept that explicitly.
void refusePlaceholders(const import_options& options, const loading_notes& notes) {
  if (options.placeholders || notes.placeholders.empty()) {
    return;
  }
  std::vector<std::string> lines;
  for (const position animal : notes.placeholders) {
    lines.push_back(std::to_string(notes.lineOf(animal)));
  }
  throw Failure(notes.animals_table + ": no list would show the " +
                (lines.size() == 1 ? "animal in line " : "animals in the lines ") + nameList(lines) +
                "; nothing was written\n  --placeholders accepts them, --id-prefix TEXT puts a text before every ID");
}

void printCount(const char* what, std::size_t count) {
  std::cout << std::left << std::setw(18) << what << count << "\n";
}

/// Without the one that stands for unknown locations.
std::size_t countLocations() {
  std::size_t count = 0;
  for (const deme_level& level : MetaPop.levels()) {
    count += static_cast<std::size_t>(std::count_if(level.members.begin(), level.members.end(), [](const auto& member) {
      return !isSameWord(member.name, "unknown");
    }));
  }
  return count;
}

void printNames(const char* what, const std::vector<std::string>& names) {
  if (!names.empty()) {
    std::cout << std::left << std::setw(18) << what << nameList(names) << "\n";
  }
}

void reportLoaded(const loading_notes& notes) {
  std::size_t animals = 0;
  std::size_t founders = 0;
  std::size_t events = 0;
  for (const master_data& animal : Animals.records) {
    animals += hasRow(animal) ? 1 : 0;
    founders += !hasRow(animal) && animal.stud_id.starts_with(PSEUDO_FOUNDER_PREFIX) ? 1 : 0;
    events += animal.moves.size();
  }
  std::vector<std::string> fields;
  for (const user_field& field : user_field_list) {
    fields.push_back(field.name);
  }
  printCount("animals", animals);
  printCount("events", events);
  printCount("locations", countLocations());
  printCount("programmes", Management.programs().size());
  printCount("pseudo founders", founders);
  printNames("new locations", notes.new_locations);
  std::vector<std::string> taxa;
  std::remove_copy(Subspecies.names().begin(), Subspecies.names().end(), std::back_inserter(taxa),
                   *Subspecies.getGeneric());
  printNames("taxa", taxa);
  printNames("other columns", fields);
  std::cout << "spx check lists what cannot be true in this studbook.\n";
}

/// Whether the import updates an existing studbook file.
bool isUpdate(Session& session, const import_options& options) {
  return !options.replace && session.hasStudbook() && isStudbookFile(session.importTarget());
}

HAND_EDITS policyOf(const import_options& options) {
  if (options.ours) {
    return HAND_EDITS::OURS;
  }
  return options.theirs ? HAND_EDITS::THEIRS : HAND_EDITS::ASK;
}

/// Shows how the columns were understood, and writes the mapping file if one was asked for.
void reportColumns(const Session& session, const studbook_tables& tables, const studbook_files& files) {
  if (!tables.notes) {
    return;
  }
  showColumns(std::cout, *tables.notes);
  const std::string mapping = session.newMapping();
  if (!mapping.empty()) {
    writeMapping(mapping, tables, files.reading);
    std::cerr << "spx: wrote " << mapping << "; --mapping reads the next table in the same way\n";
  }
}

/// Loads the tables first, so that their faults are reported with the lines of the tables. Places are those of the
/// studbook where the tables do not list them.
ExitCode update(Session& session, const import_options& options) {
  const studbook_files files = session.filesBeside(options.animals);
  studbook_tables tables = openTables(files);
  if (!tables.locations.open) {
    tables.locations =
        storedTables(std::make_shared<StudbookFile>(session.importTarget(), FILE_ACCESS::READ)).locations;
  }
  const loading_notes notes = loadStudbook(tables);
  refusePlaceholders(options, notes);
  reportColumns(session, tables, files);
  reportLoaded(notes);
  std::cout.flush();
  tables = {};  // the studbook file among them would be in the way of the change
  const edition table = readEdition(openTables(files));
  edit_options edit = options.edit;
  edit.freedom.anyway = true;
  return runEdit(session, edit, {IMPORT_CHANGE, actionText("import", {options.animals}), "", ""},
                 [&](StudbookEdit& change) { updateStudbook(change, table, policyOf(options)); });
}

ExitCode import(Session& session, const import_options& options) {
  session.useIdPrefix(options.id_prefix);
  if (isUpdate(session, options)) {
    return update(session, options);
  }
  const std::string target = options.edit.dry_run ? std::string() : session.importTarget();
  const studbook_files files = session.filesBeside(options.animals);
  const studbook_tables tables = openTables(files);
  if (options.edit.dry_run) {
    const loading_notes notes = loadStudbook(tables);
    refusePlaceholders(options, notes);
    reportColumns(session, tables, files);
    reportLoaded(notes);
    std::cout.flush();
    std::cerr << "spx: dry run: nothing was written\n";
    return ExitCode::DONE;
  }
  removeStagedWhenEnded(std::filesystem::path(target).parent_path().string());
  NewStudbook book(target);
  const loading_notes notes = loadStudbook(book.copying(tables));
  refusePlaceholders(options, notes);
  const bool replaced =
      book.finish({IMPORT_CHANGE, actionText("import", {options.animals}), options.edit.author, options.edit.message});
  reportColumns(session, tables, files);
  reportLoaded(notes);
  std::cout.flush();
  std::cerr << "spx: wrote " << target << "\n";
  if (replaced) {
    std::cerr << "spx: the replaced studbook is kept as " << book.backup() << "\n";
  }
  return ExitCode::DONE;
}

}  // namespace

void addImportCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<import_options>();
  commands.push_back(
      {"import", "Make a studbook file from tables, or update one",
       [options](Session& session) { return import(session, *options); },
       [options](CLI::App& app) {
         requireName(
             *app.add_option("ANIMALS", options->animals,
                             "Table of animals (CSV, .xlsx, .ods), or a directory with animals.csv and the others")
                  ->required());
         app.add_option("--id-prefix", options->id_prefix, "Put a text before every ID")->type_name("TEXT");
         app.add_flag("--placeholders", options->placeholders, "Accept animals whose IDs are placeholders");
         CLI::Option* ours = app.add_flag("--ours", options->ours, "Keep what was changed by hand");
         app.add_flag("--theirs", options->theirs, "Take the table's values instead")->excludes(ours);
         app.add_flag("--replace", options->replace,
                      "Make a new studbook file with a new history; the previous one is kept");
         addEditOptions(app, options->edit);
       }});
}

}  // namespace spx::console
