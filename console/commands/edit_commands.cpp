#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/studbook/edit_rows.h"

namespace spx::console {
namespace {

struct edit_options {
  std::string id;
  std::vector<std::string> values;  ///< FIELD=VALUE, as typed
};

using animal_edit = std::vector<std::string> (*)(const std::string&, const std::string&,
                                                 const std::vector<field_value>&);

std::vector<field_value> parseValues(const edit_options& options) {
  std::vector<field_value> values;
  for (const std::string& text : options.values) {
    values.push_back(parseFieldValue(text));
  }
  return values;
}

ExitCode editAnimal(Session& session, const edit_options& options, animal_edit edit) {
  const std::vector<field_value> values = parseValues(options);
  for (const std::string& parent : edit(session.writableStudbook(), options.id, values)) {
    std::cerr << "spx: the parent " << quotedText(parent) << " has no record and becomes a pseudo founder\n";
  }
  return ExitCode::DONE;
}

ExitCode editEvents(Session& session, const edit_options& options) {
  const std::vector<field_value> values = parseValues(options);
  addEvent(session.writableStudbook(), options.id, values);
  return ExitCode::DONE;
}

}  // namespace

void addEditCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<edit_options>();
  const auto add_words = [options](CLI::App& app, bool needs_values) {
    app.add_option("ID", options->id, "The animal")->required();
    app.add_option("FIELD=VALUE", options->values, "A field, or a column's title, and its value")
        ->required(needs_values);
  };
  const auto with_values = [add_words](CLI::App& app) { add_words(app, true); };
  CommandGroup animal("animal", "Change the animals of a studbook file");
  animal.add({"set", "Give an animal other values",
              [options](Session& session) { return editAnimal(session, *options, &setAnimal); }, with_values});
  animal.add({"add", "Add an animal", [options](Session& session) { return editAnimal(session, *options, &addAnimal); },
              [add_words](CLI::App& app) { add_words(app, false); }});
  commands.push_back(animal.asCommand());
  CommandGroup event("event", "Change the events of a studbook file");
  event.add({"add", "Add an event to an animal", [options](Session& session) { return editEvents(session, *options); },
             with_values});
  commands.push_back(event.asCommand());
}

}  // namespace spx::console
