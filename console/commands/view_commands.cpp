#include <cstdio>
#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/project/view_store.h"

namespace spx::console {
namespace {

struct view_words {
  view_choice view;
  std::string name;
  std::vector<std::string> assignments;
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
  View.listView();
  return ExitCode::DONE;
}

ExitCode list(Session& session, const view_words&) {
  session.openProject();
  if (!View.listViews("view")) {
    throw Failure(View.path + ": cannot be read");
  }
  return ExitCode::DONE;
}

ExitCode save(Session& session, const view_words& words) {
  openView(session, words.view);
  saveView(session.viewDirectory(), words.name);
  return ExitCode::DONE;
}

ExitCode load(Session& session, const view_words& words) {
  if (words.name.empty()) {
    throw UsageError("a view has a name");
  }
  view_choice choice = words.view;
  choice.name = words.name;
  openView(session, choice);
  keepView(session);
  return ExitCode::DONE;
}

ExitCode clear(Session& session, const view_words&) {
  session.openProject();
  const std::string file = session.projectDirectory() + "/" + CURRENT_VIEW + ".view";
  std::error_code failed;
  std::filesystem::remove(file, failed);
  if (failed) {
    throw Failure(file + ": cannot be removed: " + failed.message());
  }
  return ExitCode::DONE;
}

ExitCode set(Session& session, const view_words& words) {
  openView(session, words.view);
  for (const std::string& assignment : words.assignments) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
      throw UsageError(console::quotedText(assignment) + " is not KEY=VALUE");
    }
    setViewSetting(assignment.substr(0, equals), assignment.substr(equals + 1));
  }
  keepView(session);
  return ExitCode::DONE;
}

std::string settingsText() {
  std::string text = "Settings (KEY=VALUE):\n";
  for (const view_setting& setting : viewSettings()) {
    const std::string left = std::string("  ") + setting.name + "=" + setting.values;
    text += left + std::string(left.size() < 34 ? 34 - left.size() : 1, ' ') + setting.help +
            (setting.is_list ? " (adds; \"all\" empties the list)\n" : "\n");
  }
  return text;
}

}  // namespace

void addViewCommands(std::vector<command>& commands) {
  const auto words = std::make_shared<view_words>();
  CommandGroup group("view", "Show, change, save and load views");
  group.add({"show", "Show the settings of the view", [words](Session& session) { return show(session, *words); },
             [words](CLI::App& app) { addViewOptions(app, words->view, WHOLE_VIEW); }});
  group.add(
      {"list", "List the saved views of the project", [words](Session& session) { return list(session, *words); }});
  group.add({"save", "Save the view under a name", [words](Session& session) { return save(session, *words); },
             [words](CLI::App& app) {
               app.add_option("NAME", words->name, "Name of the view")->required();
               addViewOptions(app, words->view, WHOLE_VIEW);
             }});
  group.add({"load", "Make a saved view the current one of the project",
             [words](Session& session) { return load(session, *words); },
             [words](CLI::App& app) { app.add_option("NAME", words->name, "Name of the view")->required(); }});
  group.add({"clear", "Go back to the view that takes every animal",
             [words](Session& session) { return clear(session, *words); }});
  group.add({"set", "Change the current view of the project",
             [words](Session& session) { return set(session, *words); },
             [words](CLI::App& app) {
               app.add_option("KEY=VALUE", words->assignments, "Settings")->required();
               app.footer(settingsText());
             }});
  commands.push_back(group.asCommand());
}

}  // namespace spx::console
