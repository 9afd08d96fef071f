#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/analyses/listings.h"
#include "spx/core/animal_data.h"
#include "spx/support/console.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/commands/command.h"
#include "console/output/animal_records.h"
#include "console/output/output_format.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/studbook/record_genetics.h"

namespace spx::console {
namespace {

struct listing_options {
  view_choice view;
  OUTPUT_FORMAT format = OUTPUT_FORMAT::TEXT;
  std::string id;
  bool all = false;
};

void openListing(Session& session, const listing_options& options) {
  session.loadStudbook();
  useView(session, options.view);
  computeRecordGenetics();
}

ExitCode exitCode(bool done) {
  return done ? ExitCode::DONE : ExitCode::FAILED;
}

/// An empty listing may be right, but the one who typed it wants to know why.
void explainEmptyListing() {
  const auto is_listed = [](const master_data& animal) { return animal.print; };
  if (std::none_of(Animals.records.begin(), Animals.records.end(), is_listed)) {
    std::cout.flush();
    std::cerr << "spx: no animal passes the view; spx view show tells what it asks for\n";
  }
}

// For scripts the animals are flagged as the library's own listings flag them.

void flagAnimals(bool (*flag)(master_data&)) {
  for (master_data& animal : Animals.records) {
    flag(animal);
  }
}

ExitCode list(Session& session, const listing_options& options) {
  openListing(session, options);
  bool done = true;
  if (options.format == OUTPUT_FORMAT::TEXT) {
    done = listStudbookData(options.all);
  } else {
    options.all ? static_cast<void>(Animals.print(true)) : flagAnimals(inListing);
    writeAnimals(std::cout, options.format);
  }
  explainEmptyListing();
  return exitCode(done);
}

ExitCode living(Session& session, const listing_options& options) {
  openListing(session, options);
  bool done = true;
  if (options.format == OUTPUT_FORMAT::TEXT) {
    done = listLiving();
  } else {
    flagAnimals(inLiving);
    writeAnimals(std::cout, options.format);
  }
  explainEmptyListing();
  return exitCode(done);
}

void writeSelected(OUTPUT_FORMAT format) {
  Animals.sortList(SORT_FIELD::BIRTH);
  flagAnimals(inPedigree);
  if (format != OUTPUT_FORMAT::TEXT) {
    return writeAnimals(std::cout, format);
  }
  qs_lib::display(studbookHeader());
  for (const position record : Animals.index) {
    prnMaster(Animals.records[record]);
  }
  qs_lib::display(studbookFooter());
}

/// The library lists what was selected before when there is no such animal.
void needAnimal(const std::string& id) {
  if (!Animals.animalExists(id)) {
    throw Failure("there is no animal " + quotedText(id));
  }
}

ExitCode offspring(Session& session, const listing_options& options) {
  session.loadStudbook();
  needAnimal(options.id);
  computeRecordGenetics();
  if (options.format == OUTPUT_FORMAT::TEXT) {
    return exitCode(listOffspring(options.id));
  }
  for (master_data& animal : Animals.records) {
    animal.selected = animal.sire_id == options.id || animal.dam_id == options.id;
  }
  writeSelected(options.format);
  return ExitCode::DONE;
}

ExitCode pedigree(Session& session, const listing_options& options) {
  session.loadStudbook();
  needAnimal(options.id);
  computeRecordGenetics();
  Animals.selectAncestors(options.id);
  writeSelected(options.format);
  return ExitCode::DONE;
}

ExitCode show(Session& session, const listing_options& options) {
  session.loadStudbook();
  needAnimal(options.id);
  computeRecordGenetics();
  if (options.format == OUTPUT_FORMAT::TEXT) {
    return exitCode(listAnimal(options.id));
  }
  writeCard(std::cout, options.format, Animals.records[Animals.findMaster(options.id)]);
  return ExitCode::DONE;
}

using listing = ExitCode (*)(Session&, const listing_options&);

void addTable(std::vector<command>& commands, const char* name, const char* help, listing run) {
  const auto options = std::make_shared<listing_options>();
  commands.push_back({name, help, [options, run](Session& session) { return run(session, *options); },
                      [options, run](CLI::App& app) {
                        if (run == list) {
                          app.add_flag("--all", options->all,
                                       "Every record, whatever the view, pseudo individuals too");
                        }
                        addFormatOption(app, options->format);
                        addViewOptions(app, options->view, WHOLE_VIEW);
                      }});
}

void addAnimal(std::vector<command>& commands, const char* name, const char* help, listing run) {
  const auto options = std::make_shared<listing_options>();
  commands.push_back({name, help, [options, run](Session& session) { return run(session, *options); },
                      [options](CLI::App& app) {
                        app.add_option("ID", options->id, "Studbook ID, as the table has it")->required();
                        addFormatOption(app, options->format);
                      }});
}

}  // namespace

void addListingCommands(std::vector<command>& commands) {
  addTable(commands, "list", "List the animals of the view", list);
  addTable(commands, "living", "List the living animals of the view", living);
  addAnimal(commands, "offspring", "List the offspring of an animal", offspring);
  addAnimal(commands, "pedigree", "List an animal and its ancestors", pedigree);
  addAnimal(commands, "show", "Show the card of an animal", show);
}

}  // namespace spx::console
