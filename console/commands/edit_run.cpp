#include "console/commands/edit_run.h"

#include <iostream>

#include <CLI/CLI.hpp>

#include "console/base/display_text.h"
#include "console/commands/edit_findings.h"
#include "console/edits/change_text.h"
#include "console/output/result_output.h"

namespace spx::console {
namespace {

void tell(const std::string& text) {
  std::cerr << "spx: " << text << "\n";
}

}  // namespace

void addEditOptions(CLI::App& app, edit_options& options) {
  app.add_option("--message,-m", options.message, "Why the change is made, for the history")->type_name("TEXT");
  app.add_option("--as", options.author, "Who makes the change, for the history (default: your user name)")
      ->type_name("NAME");
  app.add_flag("--dry-run", options.dry_run, "Show what would change, but write nothing");
}

void addAnywayOption(CLI::App& app, edit_options& options) {
  app.add_flag("--anyway", options.freedom.anyway, "Make the change even if it cannot be true");
}

void addNewOption(CLI::App& app, edit_options& options) {
  app.add_flag("--new", options.freedom.allow_new, "Take unknown fields, locations, taxa and parents as new ones");
}

ExitCode runEdit(Session& session, const edit_options& options, change_note note,
                 const std::function<void(StudbookEdit&)>& make, std::int64_t undoes) {
  note.author = options.author;
  note.message = options.message;
  StudbookEdit edit(session.writableStudbook(), note, undoes);
  std::vector<finding> before = findingsOf(edit);
  make(edit);
  const std::vector<std::string> lines = changeLines(edit);
  const auto tellNotes = [&] {
    for (const std::string& sentence : edit.notes()) {
      tell(visibleText(sentence));
    }
  };
  if (lines.empty()) {
    tellNotes();
    tell("the studbook already has these values; nothing was changed");
    return ExitCode::DONE;
  }
  const FindingChanges findings(edit, std::move(before), findingsOf(edit));
  if (!options.freedom.anyway) {
    findings.refuseImpossible();
  }
  ResultOutput output({}, true);
  for (const auto& texts : {lines, findings.lines()}) {
    for (const std::string& line : texts) {
      output.stream() << visibleText(line) << "\n";
    }
  }
  output.finish();
  tellNotes();
  if (options.dry_run) {
    tell("dry run: nothing was written");
    return ExitCode::DONE;
  }
  edit.commit();
  tell("change " + std::to_string(edit.number()) + "; spx undo takes it back");
  return ExitCode::DONE;
}

std::string actionText(const std::string& command, const std::vector<std::string>& words) {
  std::string text = command;
  for (const std::string& word : words) {
    const bool is_quoted = word.empty() || word.find_first_of(" \t\n\"") != std::string::npos;
    text += " " + (is_quoted ? "\"" + word + "\"" : word);
  }
  return text;
}

}  // namespace spx::console
