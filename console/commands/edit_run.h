#pragma once

#include <functional>
#include <string>
#include <vector>

#include "console/base/exit_code.h"
#include "console/edits/animal_edits.h"
#include "console/edits/studbook_edit.h"
#include "console/project/session.h"

namespace CLI {
class App;
}

namespace spx::console {

/// The options of every command that changes a studbook file.
struct edit_options {
  std::string message;
  std::string author;
  bool dry_run = false;
  edit_freedom freedom;
};

/// Adds `--message`, `--as` and `--dry-run`.
void addEditOptions(CLI::App& app, edit_options& options);

/// Adds `--anyway`, for commands that refuse changes that look wrong.
void addAnywayOption(CLI::App& app, edit_options& options);

/// Adds `--new`, for commands that take names of fields, locations and taxa.
void addNewOption(CLI::App& app, edit_options& options);

/// Runs a change of the studbook file of the session: makes it, loads and checks the resulting studbook,
/// prints the differences, and writes the change to disk. Throws what `make` throws, and Failure with
/// nothing changed when the result could not be loaded.
/// @param note  kind and action of the change
ExitCode runEdit(Session& session, const edit_options& options, change_note note,
                 const std::function<void(StudbookEdit&)>& make, std::int64_t undoes = 0);

/// The words of a command as one text, those with blanks in quotes.
std::string actionText(const std::string& command, const std::vector<std::string>& words);

}  // namespace spx::console
