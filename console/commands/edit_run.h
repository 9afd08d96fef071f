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

/// What every command that changes a studbook file offers.
struct edit_options {
  std::string message;
  std::string author;
  bool dry_run = false;
  edit_freedom freedom;
};

/// Offers `--message`, `--as` and `--dry-run`.
void addEditOptions(CLI::App& app, edit_options& options);

/// Offers `--anyway`, for commands that refuse what makes no sense.
void addAnywayOption(CLI::App& app, edit_options& options);

/// Offers `--new`, for commands that take the names of fields, locations and taxa.
void addNewOption(CLI::App& app, edit_options& options);

/// Runs a change of the studbook file of the session: makes it, reads and checks the studbook as it would
/// be, prints what is different, and brings it to the disk. Throws what `make` throws, and Failure
/// with nothing changed when the studbook could not be loaded any more.
/// @param note  kind and action of the change
ExitCode runEdit(Session& session, const edit_options& options, change_note note,
                 const std::function<void(StudbookEdit&)>& make, std::int64_t undoes = 0);

/// The words of a command as one text, those with blanks in quotes.
std::string actionText(const std::string& command, const std::vector<std::string>& words);

}  // namespace spx::console
