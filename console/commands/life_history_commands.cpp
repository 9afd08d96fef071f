#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/project/biology.h"
#include "spx/support/file_name.h"

#include "console/base/assignment.h"
#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/output/output_file.h"
#include "console/output/table_options.h"
#include "console/project/life_history.h"

namespace spx::console {
namespace {

struct life_history_words {
  std::vector<std::string> assignments;
  std::string file;
  bool overwrite = false;
};

/// The same parameters under another file name.
Biology copyAt(const std::string& path) {
  Biology copy = LifeHistory;
  const qs_lib::name_of_file parts = qs_lib::splitFileName(path);
  copy.setDirectory(parts.directory);
  copy.setName(parts.name);
  copy.setExtension(parts.extension);
  return copy;
}

void keep(Biology& parameters) {
  if (!parameters.save()) {
    throw Failure(parameters.getFileName() + ": cannot be written");
  }
}

/// A parameter at its default says nothing about the species, so it is shown as not set. The neonatal age applies
/// with its default, too.
ExitCode show(Session& session) {
  session.openProjectIfNamed();
  Table table({{"parameter", "Parameter"},
               {.name = "value", .title = "Value", .alignment = ALIGNMENT::RIGHT},
               {"unit", "Unit"},
               {"meaning", "Meaning"}});
  const Biology unset;
  for (const life_history_setting& setting : lifeHistorySettings()) {
    const qs_lib::ConfigElement entry = LifeHistory.get(setting.key);
    const std::string text = entry.value;
    const bool is_unset =
        text == std::string(unset.get(setting.key).value) && setting.key != std::string("NEONATAL_AGE");
    // The description of a choice ends with its name: "Reproductive season: birth-pulse".
    const std::size_t choice = entry.description.find(": ");
    const bool is_choice = choice != std::string::npos;
    table.addRow({typedName(setting.key),
                  is_choice  ? Cell(entry.description.substr(choice + 2))
                  : is_unset ? Cell("not set")
                             : Cell(text),
                  setting.values == "DAYS" ? Cell("days") : Cell(), entry.description.substr(0, choice)});
  }
  showTable(table, {});
  return ExitCode::DONE;
}

ExitCode set(Session& session, const life_history_words& words) {
  session.openProject();
  for (const std::string& text : words.assignments) {
    const assignment parameter = splitAssignment(text, "KEY=VALUE");
    setLifeHistory(parameter.name, parameter.value);
  }
  checkReproductiveAges();
  keep(LifeHistory);
  return ExitCode::DONE;
}

ExitCode load(Session& session, const life_history_words& words) {
  session.openProject();
  Biology other = copyAt(words.file);
  if (!other.load()) {
    throw Failure(words.file + ": not a life-history file, or unreadable");
  }
  checkLifeHistory(other);
  Biology changed = other;
  changed.setDirectory(LifeHistory.getDirectory());
  changed.setName(LifeHistory.getName());
  changed.setExtension(LifeHistory.getExtension());
  keep(changed);
  return ExitCode::DONE;
}

ExitCode save(Session& session, const life_history_words& words) {
  session.openProject();
  refuseToOverwrite(words.file, words.overwrite);
  Biology copy = copyAt(words.file);
  keep(copy);
  return ExitCode::DONE;
}

std::string settingsText() {
  std::string text = "Parameters (KEY=VALUE):\n";
  for (const life_history_setting& setting : lifeHistorySettings()) {
    text += "  " + typedName(setting.key) + "=" + setting.values + "\n";
  }
  return text;
}

}  // namespace

void addLifeHistoryCommands(std::vector<command>& commands) {
  const auto words = std::make_shared<life_history_words>();
  CommandGroup group("life-history", "Show and set the life history of the project's species");
  group.add({"show", "Show all parameters", [](Session& session) { return show(session); }});
  group.add({"set", "Set parameters", [words](Session& session) { return set(session, *words); },
             [words](CLI::App& app) {
               app.add_option("KEY=VALUE", words->assignments, "Parameters")->required();
               app.footer(settingsText());
             }});
  group.add({"load", "Replace all parameters with those of a file",
             [words](Session& session) { return load(session, *words); },
             [words](CLI::App& app) { app.add_option("FILE", words->file, "A life-history file")->required(); }});
  group.add({"save", "Write all parameters to a file", [words](Session& session) { return save(session, *words); },
             [words](CLI::App& app) {
               app.add_option("FILE", words->file, "The file to write")->required();
               app.add_flag("--overwrite", words->overwrite, "Replace an existing file");
             }});
  commands.push_back(group.asCommand());
}

}  // namespace spx::console
