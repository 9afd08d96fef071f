#include <memory>

#include <CLI/CLI.hpp>

#include "console/commands/command.h"
#include "console/commands/edit_run.h"
#include "console/edits/event_edits.h"

namespace spx::console {
namespace {

/// The words and options of the everyday commands: birth, death, transfer, loss.
struct life_words {
  edit_options options;
  std::vector<std::string> ids;
  std::vector<std::string> where;
  std::string date;
  std::string place;
  std::string sire;
  std::string dam;
  std::string sex;
};

using typed_words = std::shared_ptr<life_words>;

void addIds(CLI::App& app, life_words& typed) {
  app.add_option("ID", typed.ids, "The animals");
  app.add_option("--where", typed.where, "Choose the animals that meet this condition")
      ->type_name("FIELD=VALUE")
      ->allow_extra_args(false);
}

void addDate(CLI::App& app, life_words& typed) {
  app.add_option("--on", typed.date, "The date (YYYY-MM-DD, YYYY-MM or YYYY)")->type_name("DATE")->required();
}

void addCommon(CLI::App& app, life_words& typed) {
  addEditOptions(app, typed.options);
  addAnywayOption(app, typed.options);
  addNewOption(app, typed.options);
}

void addPlace(CLI::App& app, life_words& typed) {
  app.add_option("--at", typed.place, "The location")->type_name("LOCATION");
}

/// The text of the command for the history.
std::string actionOf(const std::string& name, const life_words& typed) {
  std::vector<std::string> shown = typed.ids;
  const auto add = [&](const char* option, const std::string& value) {
    if (!value.empty()) {
      shown.insert(shown.end(), {option, value});
    }
  };
  for (const std::string& condition : typed.where) {
    add("--where", condition);
  }
  add("--sire", typed.sire);
  add("--dam", typed.dam);
  add("--sex", typed.sex);
  add(name == "transfer" ? "--to" : "--at", typed.place);
  add("--on", typed.date);
  return actionText(name, shown);
}

ExitCode runLifeEdit(Session& session, const std::string& name, const life_words& typed,
                     const std::function<void(StudbookEdit&)>& make) {
  return runEdit(session, typed.options, {EDIT_CHANGE, actionOf(name, typed), "", ""}, make);
}

command birthCommand() {
  const auto typed = std::make_shared<life_words>();
  return {"birth", "Enter births",
          [typed](Session& session) {
            return runLifeEdit(session, "birth", *typed, [&](StudbookEdit& edit) {
              std::vector<field_value> values = {{"birth_date", typed->date}, {"origin", "captive-born"}};
              const std::pair<const char*, const std::string&> others[] = {
                  {"sire", typed->sire}, {"dam", typed->dam}, {"sex", typed->sex}, {"birth_location", typed->place}};
              for (const auto& [field, value] : others) {
                if (!value.empty()) {
                  values.push_back({field, value});
                }
              }
              for (const std::string& id : typed->ids) {
                addAnimal(edit, id, values, typed->options.freedom);
              }
            });
          },
          [typed](CLI::App& app) {
            app.add_option("ID", typed->ids, "The IDs of the young")->required();
            app.add_option("--sire", typed->sire, "The sire")->type_name("ID");
            app.add_option("--dam", typed->dam, "The dam")->type_name("ID");
            app.add_option("--sex", typed->sex, "The sex")->type_name("SEX");
            addDate(app, *typed);
            addPlace(app, *typed);
            addCommon(app, *typed);
          }};
}

/// @param event  how the record ends
command endCommand(const char* name, const char* help, const char* event) {
  const auto typed = std::make_shared<life_words>();
  return {name, help,
          [typed, name, event](Session& session) {
            return runLifeEdit(session, name, *typed, [&](StudbookEdit& edit) {
              endAnimals(edit, {typed->ids, typed->where}, event, typed->date, typed->place, typed->options.freedom);
            });
          },
          [typed](CLI::App& app) {
            addIds(app, *typed);
            addDate(app, *typed);
            addPlace(app, *typed);
            addCommon(app, *typed);
          }};
}

command transferCommand() {
  const auto typed = std::make_shared<life_words>();
  return {"transfer", "Enter transfers of animals to another location",
          [typed](Session& session) {
            return runLifeEdit(session, "transfer", *typed, [&](StudbookEdit& edit) {
              addEvents(edit, {typed->ids, typed->where},
                        {{"date", typed->date}, {"event", "arrival"}, {"location", typed->place}},
                        typed->options.freedom);
            });
          },
          [typed](CLI::App& app) {
            addIds(app, *typed);
            app.add_option("--to", typed->place, "The new location")->type_name("LOCATION")->required();
            addDate(app, *typed);
            addCommon(app, *typed);
          }};
}

}  // namespace

void addLifeCommands(std::vector<command>& commands) {
  commands.push_back(birthCommand());
  commands.push_back(endCommand("death", "Enter deaths", "death"));
  commands.push_back(transferCommand());
  commands.push_back(endCommand("loss", "Enter animals lost to follow-up", "lost-to-follow-up"));
}

}  // namespace spx::console
