#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/commands/edit_run.h"
#include "console/edits/change_time.h"
#include "console/edits/undo.h"
#include "console/output/output_file.h"
#include "console/studbook/studbook_file.h"

namespace spx::console {
namespace {

struct undo_options {
  edit_options edit;
  std::vector<std::int64_t> changes;
};

struct restore_options {
  std::string time;
  std::string file;
  bool overwrite = false;
};

std::vector<journal_change> changesOf(Session& session) {
  StudbookFile file(session.writableStudbook(), FILE_ACCESS::READ);
  return hasJournal(file.database()) ? readChanges(file.database()) : std::vector<journal_change>();
}

journal_change needChange(const std::vector<journal_change>& changes, std::int64_t number) {
  const auto found = std::find_if(changes.begin(), changes.end(),
                                  [&](const journal_change& change) { return change.number == number; });
  if (found == changes.end()) {
    throw Failure("there is no change " + std::to_string(number) + "; spx log lists the changes");
  }
  if (found->undone_by != 0) {
    throw Failure("change " + std::to_string(number) + " has already been undone by change " +
                  std::to_string(found->undone_by));
  }
  if (found->cells == 0) {
    throw Failure("change " + std::to_string(number) + " made the studbook and cannot be undone");
  }
  return *found;
}

/// Undoes a change, as an edit of its own.
ExitCode takeBackAsEdit(Session& session, const edit_options& options, const journal_change& change) {
  const bool repeats = change.note.kind == UNDO_CHANGE;
  const std::string action =
      (repeats ? "redo " + std::to_string(change.undoes) : "undo " + std::to_string(change.number)) + ": " +
      change.note.action.substr(change.note.action.find(repeats ? ": " : "") + (repeats ? 2 : 0));
  edit_options anyway = options;
  anyway.freedom.anyway = true;  // the state existed before, so it is not refused
  return runEdit(
      session, anyway, {repeats ? REDO_CHANGE : UNDO_CHANGE, action, "", ""},
      [&](StudbookEdit& edit) { takeBack(edit, change.number); }, change.number);
}

ExitCode undo(Session& session, const undo_options& options) {
  std::vector<std::int64_t> numbers = options.changes;
  std::sort(numbers.rbegin(), numbers.rend());
  if (numbers.empty()) {
    const auto last = lastChange(changesOf(session));
    if (!last) {
      throw Failure("there is nothing to undo");
    }
    numbers.push_back(last->number);
  }
  for (const std::int64_t number : numbers) {
    takeBackAsEdit(session, options.edit, needChange(changesOf(session), number));
  }
  return ExitCode::DONE;
}

ExitCode redo(Session& session, const undo_options& options) {
  const auto last = lastUndo(changesOf(session));
  if (!last) {
    throw Failure("there is nothing to redo");
  }
  return takeBackAsEdit(session, options.edit, *last);
}

ExitCode restore(Session& session, const restore_options& options) {
  const std::string time = journalTime("--at", options.time, true);
  const std::string file = session.writableStudbook();
  refuseToOverwrite(options.file, options.overwrite);
  const std::int64_t last = restoreStudbook(file, time, options.file);
  std::cerr << "spx: wrote " << options.file << ", the studbook as it was after change " << last << "\n";
  return ExitCode::DONE;
}

}  // namespace

void addHistoryCommands(std::vector<command>& commands) {
  const auto undone = std::make_shared<undo_options>();
  commands.push_back({"undo", "Take changes back", [undone](Session& session) { return undo(session, *undone); },
                      [undone](CLI::App& app) {
                        app.add_option("CHANGE", undone->changes,
                                       "Their numbers in spx log (default: the last change)");
                        addEditOptions(app, undone->edit);
                      }});
  const auto redone = std::make_shared<undo_options>();
  commands.push_back({"redo", "Take the last undo back", [redone](Session& session) { return redo(session, *redone); },
                      [redone](CLI::App& app) { addEditOptions(app, redone->edit); }});
  const auto restored = std::make_shared<restore_options>();
  commands.push_back(
      {"restore", "Write the studbook as it was at a given time",
       [restored](Session& session) { return restore(session, *restored); },
       [restored](CLI::App& app) {
         app.add_option("--at", restored->time, "The time: 2026-03-01 (its end) or \"2026-03-01 14:30\"")
             ->type_name("TIME")
             ->required();
         app.add_option("-o,--output", restored->file, "The studbook file to write")->type_name("FILE")->required();
         app.add_flag("--overwrite", restored->overwrite, "Replace an existing file");
       }});
}

}  // namespace spx::console
