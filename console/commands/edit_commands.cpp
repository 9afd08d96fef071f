#include <memory>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/commands/edit_run.h"
#include "console/edits/event_edits.h"
#include "console/edits/field_edits.h"
#include "console/edits/location_edits.h"

namespace spx::console {
namespace {

/// The words and options of all these commands; each uses some of them.
struct edit_words {
  edit_options options;
  std::vector<std::string> words;  ///< IDs, names and FIELD=VALUE, as typed
  std::vector<std::string> where;
  std::size_t number = 0;
  std::string within;
  std::string table = "animals";
};

using words = std::shared_ptr<edit_words>;

/// The words without `=`, which say what is changed; those with `=` are values.
std::vector<std::string> namesOf(const edit_words& typed) {
  std::vector<std::string> names = typed.words;
  std::erase_if(names, [](const std::string& word) { return word.find('=') != std::string::npos; });
  return names;
}

std::vector<field_value> valuesOf(const edit_words& typed) {
  std::vector<field_value> values;
  for (const std::string& word : typed.words) {
    if (word.find('=') != std::string::npos) {
      values.push_back(parseFieldValue(word));
    }
  }
  return values;
}

std::vector<field_value> needValues(const edit_words& typed) {
  std::vector<field_value> values = valuesOf(typed);
  if (values.empty()) {
    throw UsageError("nothing to set; give FIELD=VALUE");
  }
  return values;
}

/// The names; throws UsageError unless there are exactly `count`.
std::vector<std::string> needNames(const edit_words& typed, std::size_t count, const char* what) {
  std::vector<std::string> names = namesOf(typed);
  if (names.size() != count) {
    throw UsageError("needs " + std::string(what));
  }
  return names;
}

animal_choice animalsOf(const edit_words& typed) {
  return {namesOf(typed), typed.where};
}

event_choice eventsOf(const edit_words& typed) {
  return {namesOf(typed), typed.where, typed.number};
}

/// An edit command: the change that it makes, and which of the common options it offers.
struct edit_command {
  const char* group;
  const char* name;
  const char* help;
  const char* positional;
  void (*make)(StudbookEdit&, const edit_words&);
  bool anyway = false;
  bool allow_new = false;
  bool where = false;
};

constexpr edit_command EDIT_COMMANDS[] = {
    {"animal", "add", "Add an animal", "ID FIELD=VALUE",
     [](StudbookEdit& edit, const edit_words& typed) {
       addAnimal(edit, needNames(typed, 1, "the ID of the new animal").front(), valuesOf(typed), typed.options.freedom);
     },
     true, true},
    {"animal", "set", "Change fields of animals", "ID FIELD=VALUE",
     [](StudbookEdit& edit, const edit_words& typed) {
       setAnimals(edit, animalsOf(typed), needValues(typed), typed.options.freedom);
     },
     true, true, true},
    {"animal", "remove", "Remove animals with their events", "ID",
     [](StudbookEdit& edit, const edit_words& typed) { removeAnimals(edit, animalsOf(typed), typed.options.freedom); },
     true, false, true},
    {"animal", "rename", "Change the ID of an animal everywhere", "ID",
     [](StudbookEdit& edit, const edit_words& typed) {
       const auto names = needNames(typed, 2, "the ID of an animal and its new ID");
       renameAnimal(edit, names[0], names[1]);
     },
     true},
    {"animal", "merge", "Merge two records of one animal", "ID FIELD=VALUE",
     [](StudbookEdit& edit, const edit_words& typed) {
       const auto names = needNames(typed, 2, "the animal to keep and the one to merge into it");
       mergeAnimals(edit, names[0], names[1], valuesOf(typed), typed.options.freedom);
     },
     true, true},
    {"event", "add", "Add an event to animals", "ID FIELD=VALUE",
     [](StudbookEdit& edit, const edit_words& typed) {
       addEvents(edit, animalsOf(typed), needValues(typed), typed.options.freedom);
     },
     true, true, true},
    {"event", "set", "Change fields of events", "ID FIELD=VALUE",
     [](StudbookEdit& edit, const edit_words& typed) {
       setEvents(edit, eventsOf(typed), needValues(typed), typed.options.freedom);
     },
     true, true, true},
    {"event", "remove", "Remove events", "ID",
     [](StudbookEdit& edit, const edit_words& typed) { removeEvents(edit, eventsOf(typed)); }, true, false, true},
    {"location", "add", "Add a location", "NAME FIELD=VALUE",
     [](StudbookEdit& edit, const edit_words& typed) {
       addLocation(edit, needNames(typed, 1, "the name of the new location").front(), typed.within, valuesOf(typed));
     }},
    {"location", "set", "Change the name, identifier or position of a location", "NAME FIELD=VALUE",
     [](StudbookEdit& edit, const edit_words& typed) {
       setLocation(edit, needNames(typed, 1, "a location").front(), needValues(typed));
     }},
    {"location", "merge", "Merge two locations", "NAME",
     [](StudbookEdit& edit, const edit_words& typed) {
       const auto names = needNames(typed, 2, "the location to keep and the one to merge into it");
       mergeLocations(edit, names[0], names[1]);
     }},
    {"field", "add", "Add a field of your own", "NAME",
     [](StudbookEdit& edit, const edit_words& typed) {
       addField(edit, typed.table, needNames(typed, 1, "the name of the new field").front());
     }},
    {"field", "rename", "Rename one of your fields", "NAME",
     [](StudbookEdit& edit, const edit_words& typed) {
       const auto names = needNames(typed, 2, "the name of a field and its new name");
       renameField(edit, typed.table, names[0], names[1]);
     }},
    {"field", "remove", "Remove one of your fields with its values", "NAME",
     [](StudbookEdit& edit, const edit_words& typed) {
       removeField(edit, typed.table, needNames(typed, 1, "the name of a field").front());
     }},
};

void addWhereOption(CLI::App& app, std::vector<std::string>& where, const char* help) {
  app.add_option("--where", where, help)->type_name("FIELD=VALUE")->allow_extra_args(false);
}

void addWords(CLI::App& app, const edit_command& each, edit_words& typed) {
  const bool is_event = each.group == std::string("event");
  app.add_option(each.positional, typed.words, "What to change, and its new values")->required(!each.where);
  if (each.where) {
    addWhereOption(app, typed.where,
                   is_event && each.name != std::string("add") ? "Choose the events that meet this condition"
                                                               : "Choose the animals that meet this condition");
  }
  if (is_event && each.name != std::string("add")) {
    app.add_option("--number", typed.number, "The N-th event of the animal")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
  }
  if (each.group == std::string("location") && each.name == std::string("add")) {
    app.add_option("--in", typed.within, "The location that contains it")->type_name("LOCATION");
  }
  if (each.group == std::string("field")) {
    app.add_option("--of", typed.table, "The table of the field (default: animals)")
        ->type_name("animals|events")
        ->check(CLI::IsMember({"animals", "events"}));
  }
  addEditOptions(app, typed.options);
  if (each.anyway) {
    addAnywayOption(app, typed.options);
  }
  if (each.allow_new) {
    addNewOption(app, typed.options);
  }
}

/// The text of the command for the history.
std::string actionOf(const edit_command& each, const edit_words& typed) {
  std::vector<std::string> shown = typed.words;
  for (const std::string& condition : typed.where) {
    shown.insert(shown.end(), {"--where", condition});
  }
  if (typed.number != 0) {
    shown.insert(shown.end(), {"--number", std::to_string(typed.number)});
  }
  return actionText(std::string(each.group) + " " + each.name, shown);
}

command commandOf(const edit_command& each) {
  const auto typed = std::make_shared<edit_words>();
  return {each.name, each.help,
          [each, typed](Session& session) {
            return runEdit(session, typed->options, {EDIT_CHANGE, actionOf(each, *typed), "", ""},
                           [&](StudbookEdit& edit) { each.make(edit, *typed); });
          },
          [each, typed](CLI::App& app) { addWords(app, each, *typed); }};
}

}  // namespace

void addEditCommands(std::vector<command>& commands) {
  static constexpr std::pair<const char*, const char*> GROUPS[] = {
      {"animal", "Change the animals in a studbook file"},
      {"event", "Change the events in a studbook file"},
      {"location", "Change the locations in a studbook file"},
      {"field", "Change your own fields in a studbook file"}};
  for (const auto& [name, help] : GROUPS) {
    CommandGroup group(name, help);
    for (const edit_command& each : EDIT_COMMANDS) {
      if (each.group == std::string(name)) {
        group.add(commandOf(each));
      }
    }
    commands.push_back(group.asCommand());
  }
}

}  // namespace spx::console
