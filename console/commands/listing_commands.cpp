#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"
#include "spx/core/user_fields.h"
#include "spx/demography/presence.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/output/animal_card.h"
#include "console/output/animal_table.h"
#include "console/output/table_options.h"
#include "console/project/view_animals.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/studbook/record_genetics.h"
#include "console/tables/loading_notes.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

struct listing_options {
  view_choice view;
  table_options table;
  std::string word;  ///< an ID, or the text to find
  std::string alive_on;
  bool all = false;
};

/// Loads the studbook and computes inbreeding and generations, which listings show and views choose by.
void loadWithGenetics(Session& session) {
  session.loadStudbook();
  computeRecordGenetics();
}

void showAnimals(const std::vector<position>& animals, ANIMAL_LIST list, const listing_options& options,
                 const std::string& if_empty) {
  Table table = animalTable(animals, list);
  table.if_empty = if_empty;
  showTable(table, options.table);
}

std::vector<position> everyRecord() {
  std::vector<position> animals(Animals.records.size());
  for (position animal = 0; animal < animals.size(); ++animal) {
    animals[animal] = animal;
  }
  return animals;
}

void refuseViewOptions(const listing_options& options) {
  if (!options.alive_on.empty()) {
    throw UsageError("--all lists every record; it cannot be combined with --alive-on");
  }
  if (!options.view.settings.empty()) {
    throw UsageError("--all lists every record; it cannot be combined with --" + options.view.settings.front().first);
  }
}

ExitCode list(Session& session, const listing_options& options) {
  if (options.all) {
    refuseViewOptions(options);
  }
  loadWithGenetics(session);
  useView(session, options.view);
  if (!options.alive_on.empty()) {
    setViewSetting("on", options.alive_on);
  }
  std::vector<position> animals = options.all                ? everyRecord()
                                  : options.alive_on.empty() ? animalsOfView()
                                                             : livingOfView();
  sortNaturally(animals);
  const std::string asked = viewText(false);
  showAnimals(animals, ANIMAL_LIST::ALL, options,
              options.alive_on.empty()
                  ? noAnimalsText(false)
                  : "no animals match " + asked + (asked.empty() ? "" : " ") + "--alive-on " + options.alive_on);
  return ExitCode::DONE;
}

ExitCode living(Session& session, const listing_options& options) {
  loadWithGenetics(session);
  useView(session, options.view);
  std::vector<position> animals = livingOfView();
  sortNaturally(animals);
  const std::string day = openDates().on ? "today" : "on " + qs_lib::julianToISO(qs_lib::dayToMs(View.monitor_date));
  const std::string asked = viewText();
  showAnimals(animals, ANIMAL_LIST::LIVING, options,
              asked.empty() ? "no animals are known to be alive " + day : noAnimalsText());
  return ExitCode::DONE;
}

/// The record that stands in for a parent without one, by the ID that its offspring name; null when there is none.
const missing_parent* findMissingParent(const std::string& id) {
  const auto found = std::find_if(
      Animals.missing_parents.begin(), Animals.missing_parents.end(),
      [&id](const missing_parent& one) { return one.id == id || Animals.records[one.stand_in].stud_id == id; });
  return found == Animals.missing_parents.end() ? nullptr : &*found;
}

/// The record of an animal, or of what stands in for a parent without one. Says so where several animals have the ID.
/// Throws Failure, with the nearest ID, when there is none.
position needAnimal(const std::string& id) {
  const position found = Animals.findMaster(id);
  if (found < Animals.records.size()) {
    const auto same = std::count_if(Animals.records.begin(), Animals.records.end(),
                                    [&id](const master_data& animal) { return animal.stud_id == id; });
    if (same > 1) {
      std::cerr << "spx: " << same << " animals have the ID " << quotedText(id) << "; this is the first of them\n";
    }
    return found;
  }
  if (const missing_parent* parent = findMissingParent(id)) {
    return parent->stand_in;
  }
  const auto without_zeros = [](const std::string& text) {
    return text.substr(std::min(text.size(), text.find_first_not_of('0')));
  };
  std::vector<std::string> ids;
  for (const master_data& animal : Animals.records) {
    if (isSameWord(without_zeros(animal.stud_id), without_zeros(id))) {
      throw Failure("there is no animal " + quotedText(id) + "; did you mean " + quotedText(animal.stud_id) + "?");
    }
    ids.push_back(animal.stud_id);
  }
  throw Failure("there is no animal " + quotedText(id) + suggestion(id, ids));
}

std::vector<position> selectedAnimals() {
  std::vector<position> animals;
  for (position animal = 0; animal < Animals.records.size(); ++animal) {
    // The fixed placeholders (WILD, UNK) are not individuals.
    if (Animals.records[animal].selected && !isFixedPlaceholder(Animals.records[animal].stud_id)) {
      animals.push_back(animal);
    }
  }
  sortByBirth(animals);
  return animals;
}

ExitCode offspring(Session& session, const listing_options& options) {
  loadWithGenetics(session);
  setStartView();
  needAnimal(options.word);
  const missing_parent* parent = findMissingParent(options.word);
  Animals.selectOffspring(parent == nullptr ? options.word : parent->id);
  showAnimals(selectedAnimals(), ANIMAL_LIST::ALL, options,
              "animal " + quotedText(options.word) + " has no offspring in the studbook");
  return ExitCode::DONE;
}

ExitCode pedigree(Session& session, const listing_options& options) {
  loadWithGenetics(session);
  setStartView();
  Animals.selectAncestors(Animals.records[needAnimal(options.word)].stud_id);
  showAnimals(selectedAnimals(), ANIMAL_LIST::ALL, options, "");
  return ExitCode::DONE;
}

ExitCode show(Session& session, const listing_options& options) {
  loadWithGenetics(session);
  setStartView();
  showCard(needAnimal(options.word), options.table);
  return ExitCode::DONE;
}

char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool holds(const std::string& text, const std::string& wanted) {
  const auto is_same = [](char a, char b) { return lowered(a) == lowered(b); };
  return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), is_same) != text.end();
}

/// A row per animal whose ID or a user-defined field holds the text, in any letter case.
Table matches(const std::string& wanted) {
  Table table({{"id", "ID"},
               {"sex", "Sex"},
               {"birth_date", "Born", COLUMN_KIND::DATE},
               {"field", "Found in"},
               {"value", "Value"}});
  std::vector<position> animals = everyRecord();
  sortNaturally(animals);
  for (const position which : animals) {
    const master_data& animal = Animals.records[which];
    const auto add = [&](const std::string& field, const std::string& value) {
      if (holds(value, wanted)) {
        table.addRow({animal.stud_id, getEnumName(animal.sex), animal.birth, field, value});
      }
    };
    if (!hasRow(animal)) {
      continue;
    }
    add("id", animal.stud_id);
    for (std::size_t field = 0; field < animal.user_data.size(); ++field) {
      add(userFieldName(field), animal.user_data[field]);
    }
  }
  return table;
}

ExitCode find(Session& session, const listing_options& options) {
  if (options.word.empty()) {
    throw UsageError("find: give the text to find");
  }
  loadWithGenetics(session);
  Table table = matches(options.word);
  table.one_row = "match";
  table.many_rows = "matches";
  table.if_empty = "no ID or user-defined field contains " + quotedText(options.word);
  showTable(table, options.table);
  return ExitCode::DONE;
}

using listing = ExitCode (*)(Session&, const listing_options&);

void addListing(std::vector<command>& commands, const char* name, const char* help, listing run,
                void (*add_options)(CLI::App&, listing_options&)) {
  const auto options = std::make_shared<listing_options>();
  commands.push_back({name, help, [options, run](Session& session) { return run(session, *options); },
                      [options, add_options](CLI::App& app) { add_options(app, *options); }});
}

void addListOptions(CLI::App& app, listing_options& options) {
  app.add_flag("--all", options.all, "Every record, placeholders too, whatever the view");
  app.add_option("--alive-on", options.alive_on, "Only animals alive and present on this day")
      ->type_name("YYYY-MM-DD|today");
  addTableOptions(app, options.table);
  addViewOptions(app, options.view, VIEW_RECORDS | VIEW_PLACES | VIEW_PERIOD);
}

void addLivingOptions(CLI::App& app, listing_options& options) {
  addTableOptions(app, options.table);
  addViewOptions(app, options.view, VIEW_RECORDS | VIEW_PLACES | VIEW_DAY | VIEW_LIVES);
}

void addFamilyOptions(CLI::App& app, listing_options& options) {
  app.add_option("ID", options.word, "Studbook ID")->required();
  addTableOptions(app, options.table);
}

void addShowOptions(CLI::App& app, listing_options& options) {
  app.add_option("ID", options.word, "Studbook ID")->required();
  addFormatOptions(app, options.table);
}

void addFindOptions(CLI::App& app, listing_options& options) {
  app.add_option("TEXT", options.word, "Part of an ID, name, transponder or other user-defined field")->required();
  addTableOptions(app, options.table);
}

}  // namespace

void addListingCommands(std::vector<command>& commands) {
  addListing(commands, "list", "List the animals of the view", list, addListOptions);
  addListing(commands, "living", "List the living animals of the view", living, addLivingOptions);
  addListing(commands, "find", "Find animals by part of their ID or of a user-defined field", find, addFindOptions);
  addListing(commands, "offspring", "List the offspring of an animal", offspring, addFamilyOptions);
  addListing(commands, "pedigree", "List an animal and its ancestors", pedigree, addFamilyOptions);
  addListing(commands, "show", "Show everything known about an animal", show, addShowOptions);
}

}  // namespace spx::console
