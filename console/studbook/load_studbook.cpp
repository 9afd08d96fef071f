#include "console/studbook/load_studbook.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>

#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/identifiers.h"
#include "spx/core/meta_population.h"
#include "spx/core/multi_parent.h"
#include "spx/core/pseudo_ids.h"
#include "spx/core/studbook.h"
#include "spx/core/sub_taxa.h"
#include "spx/core/user_fields.h"
#include "spx/support/file_name.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/base/user_directories.h"
#include "console/studbook/group_parents.h"
#include "console/studbook/loading_output.h"
#include "console/studbook/open_tables.h"
#include "console/tables/animals_table.h"
#include "console/tables/events_table.h"
#include "console/tables/locations_table.h"

namespace spx::console {
namespace {

/// Reserves memory for the records of a table that is about to be read, and a quarter more for the
/// pseudo founders: a vector that grows is held twice while it moves. The number is an estimate, so
/// when the memory cannot be reserved the vector grows as needed.
void reserveRecords(const table_source& animals) {
  const std::size_t rows = animals.estimate_rows ? animals.estimate_rows() : 0;
  try {
    Animals.records.reserve(rows + rows / 4);
  } catch (const std::exception&) {  // no memory, or more than the address space holds
  }
  Animals.initialize(0);
}

/// Reads one table; an error in the table as a whole becomes a fault. @return whether nothing is
bool readTable(const table_source& table, Faults& faults, const std::function<void()>& read) {
  if (!table.open) {
    return true;
  }
  try {
    read();
    return true;
  } catch (const TableError& error) {
    faults.add({table.name, error.line(), "", "", error.what()});
    return false;
  }
}

loading_notes readTables(const studbook_tables& tables, const char* refused) {
  reserveRecords(tables.animals);
  LocationRegistry locations;
  Faults faults;
  loading_notes notes;
  readTable(tables.locations, faults, [&] { readLocations(tables.locations, locations, faults); });
  readTable(tables.programs, faults, [&] { readPrograms(tables.programs, faults); });
  // Events of animals that were not read would all be at fault.
  if (readTable(tables.animals, faults, [&] { readAnimals(tables.animals, locations, faults, notes); })) {
    readTable(tables.events, faults, [&] { readEvents(tables.events, locations, faults, notes); });
  }
  if (!faults.empty()) {
    throw Failure(faults.text() + std::to_string(faults.count()) + (faults.count() == 1 ? " fault; " : " faults; ") +
                  refused);
  }
  notes.new_locations = locations.metNames();
  return notes;
}

/// An end without a location happened where the animal was.
void settleEnd(master_data& animal) {
  if (animal.death.date == 0 || animal.death.number != 0) {
    return;
  }
  animal.death.location = currentDeme(animal, animal.death.date);
  const auto there = std::find_if(animal.moves.rbegin(), animal.moves.rend(),
                                  [&](const move_data& move) { return move.location == animal.death.location; });
  animal.death.number = there == animal.moves.rend() ? animal.birth.number : there->number;
}

void noteDates(const master_data& animal) {
  if (animal.birth.date != 0 && (Book.first_date == 0 || animal.birth.date < Book.first_date)) {
    Book.first_date = animal.birth.date;
  }
  Book.update_date = std::max({Book.update_date, animal.birth.date, animal.death.date});
  for (const move_data& move : animal.moves) {
    Book.update_date = std::max(Book.update_date, move.date);
  }
}

void completeRecords(const std::string& file, const std::string& format, loading_notes& notes) {
  for (position record = 0; record < Animals.records.size(); ++record) {
    master_data& animal = Animals.records[record];
    if (!hasRow(animal)) {
      continue;
    }
    settleEnd(animal);
    if (isPseudoIndividual(animal.stud_id)) {
      notes.placeholders.push_back(record);
    } else {
      noteDates(animal);
    }
  }
  Book.name = qs_lib::splitFileName(file).name;
  Book.format = format;
}

/// Reports on standard error the animals that are placeholders by their IDs, and the parents without a record. A
/// studbook file has said so when it was imported, and `check` repeats it.
void report(const loading_notes& notes) {
  std::vector<std::string> names;
  for (const position animal : notes.placeholders) {
    names.push_back(Animals.records[animal].stud_id);
  }
  if (!names.empty()) {
    std::cerr << "spx: " << names.size()
              << (names.size() == 1 ? " animal is treated as a placeholder because of its ID: "
                                    : " animals are treated as placeholders because of their IDs: ")
              << nameList(names) << "\n";
  }
  names.clear();
  std::size_t references = 0;
  for (const missing_parent& parent : Animals.missing_parents) {
    if (!Animals.records[parent.stand_in].stud_id.starts_with(PSEUDO_FOUNDER_PREFIX)) {
      continue;  // an unknown parent by another name, such as "UNK 7"
    }
    if (isMultiParent(parent.id)) {
      continue;  // a group of animals is not expected to have a record
    }
    names.push_back(parent.id);
    references += parent.offspring.size();
  }
  if (!names.empty()) {
    std::cerr << "spx: " << names.size() << (names.size() == 1 ? " parent has" : " parents have") << " no record ("
              << references << (references == 1 ? " reference): " : " references): ") << nameList(names) << "\n";
  }
}

/// The groups of possible parents, for genetics.
void listGroups() {
  group_parents groups = groupParents();
  parent_list = std::move(groups.listed);
  if (groups.unlisted.empty()) return;
  std::cerr << "spx: " << groups.unlisted.size()
            << (groups.unlisted.size() == 1 ? " group names an animal without a record and counts as unknown: "
                                            : " groups name animals without a record and count as unknown: ")
            << nameList(groups.unlisted) << "\n";
}

/// Does not build the lookup: no command searches for more than a few animals by ID.
void buildDerived() {
  // Sorted by birth at once, the order in which keys are assigned.
  Animals.createIndex(SORT_FIELD::BIRTH);
  Animals.assignIdKeys();
  Animals.populationPedigree();
  Animals.flagBreeders();
}

/// Reports on standard error the cells that were not taken literally.
void tellReadings(const studbook_tables& tables) {
  std::istringstream lines(tables.notes ? tables.notes->text() : std::string());
  for (std::string line; std::getline(lines, line);) {
    std::cerr << "spx: " << line << "\n";
  }
}

loading_notes load(studbook_tables tables, const char* refused) {
  const LoadingOutput output;
  loading_notes notes = readTables(tables, refused);
  tellReadings(tables);
  completeRecords(tables.file, tables.format, notes);
  const std::shared_ptr<ReadingNotes> readings = tables.notes;
  tables = {};
  Animals.validate();
  if (readings) {
    report(notes);
  }
  listGroups();
  buildDerived();
  return notes;
}

}  // namespace

void dropStudbook() {
  Animals.clearStudbook();
  MetaPop = MetaPopulation();
  Management = BreedingProgram();
  View.clearView();  // before Subspecies, since the view may hold handles of taxa
  Subspecies = SubTaxa();
  user_field_list.clear();
  parent_list.clear();
  Book = Studbook();
}

loading_notes loadStudbook(const studbook_files& files) {
  dropStudbook();
  return loadStudbook(openTables(files));
}

loading_notes loadStudbook(studbook_tables tables, const char* refused) {
  dropStudbook();
  makeUserDirectories();
  try {
    return load(std::move(tables), refused);
  } catch (...) {
    dropStudbook();
    throw;
  }
}

}  // namespace spx::console
