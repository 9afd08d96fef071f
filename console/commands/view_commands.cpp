#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/views/data_filter.h"

#include "console/base/assignment.h"
#include "console/base/display_text.h"
#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/output/table_options.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/project/view_store.h"

namespace spx::console {
namespace {

struct view_words {
  view_choice view;
  std::string name;
  std::vector<std::string> assignments;
  bool overwrite = false;
  table_options table;
};

void openView(Session& session, const view_choice& choice) {
  session.openProject();
  session.loadStudbookIfNamed();
  useView(session, choice);
}

void keepView(const Session& session) {
  saveView(session.projectDirectory(), CURRENT_VIEW);
}

ExitCode show(Session& session, const view_words& words) {
  session.loadStudbookIfNamed();
  useView(session, words.view);
  Table table({{"setting", "Setting"}, {"value", "Value"}, {"meaning", "Meaning"}});
  for (const auto& [name, value] : viewSettingTexts()) {
    const auto setting = std::find_if(viewSettings().begin(), viewSettings().end(),
                                      [&name = name](const view_setting& each) { return name == each.name; });
    table.addRow({name, value, setting->help});
  }
  showTable(table, words.table);
  return ExitCode::DONE;
}

ExitCode list(Session& session, const view_words&) {
  session.openProject();
  const std::vector<std::string> names = viewNames(session.viewDirectory());
  for (const std::string& name : names) {
    std::cout << visibleText(name) << "\n";
  }
  if (names.empty()) {
    std::cerr << "spx: the project has no saved views; spx view save NAME saves one\n";
  }
  return ExitCode::DONE;
}

ExitCode save(Session& session, const view_words& words) {
  openView(session, words.view);
  if (!words.overwrite && viewExists(session.viewDirectory(), words.name)) {
    throw Failure("the view " + quotedText(words.name) + " already exists; use --overwrite to replace it");
  }
  saveView(session.viewDirectory(), words.name);
  return ExitCode::DONE;
}

ExitCode erase(Session& session, const view_words& words) {
  session.openProject();
  deleteView(session.viewDirectory(), words.name);
  return ExitCode::DONE;
}

ExitCode load(Session& session, const view_words& words) {
  if (words.name.empty()) {
    throw UsageError("the name of the view is empty");
  }
  view_choice choice = words.view;
  choice.name = words.name;
  openView(session, choice);
  keepView(session);
  return ExitCode::DONE;
}

ExitCode clear(Session& session, const view_words&) {
  session.openProject();
  if (viewExists(session.projectDirectory(), CURRENT_VIEW)) {
    deleteView(session.projectDirectory(), CURRENT_VIEW);
  }
  return ExitCode::DONE;
}

ExitCode set(Session& session, const view_words& words) {
  openView(session, words.view);
  for (const std::string& text : words.assignments) {
    const assignment setting = splitAssignment(text, "KEY=VALUE");
    setViewSetting(setting.name, setting.value);
  }
  checkViewBounds();
  keepView(session);
  return ExitCode::DONE;
}

std::string settingsText() {
  std::string text = "Settings (KEY=VALUE):\n";
  for (const view_setting& setting : viewSettings()) {
    text += std::string("  ") + setting.name + "=" + setting.values + "\n      " + setting.help +
            (setting.is_list ? "; \"all\" empties the list\n" : "\n");
  }
  return text;
}

}  // namespace

void addViewCommands(std::vector<command>& commands) {
  const auto words = std::make_shared<view_words>();
  CommandGroup group("view", "Show, change, save and load views");
  group.add({"show", "Show the settings of the view", [words](Session& session) { return show(session, *words); },
             [words](CLI::App& app) {
               addTableOptions(app, words->table);
               addViewOptions(app, words->view, WHOLE_VIEW);
             }});
  group.add(
      {"list", "List the saved views of the project", [words](Session& session) { return list(session, *words); }});
  group.add({"save", "Save the view under a name", [words](Session& session) { return save(session, *words); },
             [words](CLI::App& app) {
               app.add_option("NAME", words->name, "Name of the view")->required();
               app.add_flag("--overwrite", words->overwrite, "Replace a saved view of that name");
               addViewOptions(app, words->view, WHOLE_VIEW);
             }});
  group.add({"load", "Make a saved view the current one of the project",
             [words](Session& session) { return load(session, *words); },
             [words](CLI::App& app) { app.add_option("NAME", words->name, "Name of the view")->required(); }});
  group.add({"delete", "Delete a saved view of the project",
             [words](Session& session) { return erase(session, *words); },
             [words](CLI::App& app) { app.add_option("NAME", words->name, "Name of the view")->required(); }});
  group.add({"clear", "Reset to the default view", [words](Session& session) { return clear(session, *words); }});
  group.add({"set", "Change the current view of the project",
             [words](Session& session) { return set(session, *words); },
             [words](CLI::App& app) {
               app.add_option("KEY=VALUE", words->assignments, "Settings")->required();
               app.footer(settingsText());
             }});
  commands.push_back(group.asCommand());
}

}  // namespace spx::console
