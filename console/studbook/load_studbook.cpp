#include "console/studbook/load_studbook.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"
#include "spx/core/studbook.h"
#include "spx/core/sub_taxa.h"
#include "spx/core/user_fields.h"
#include "spx/support/file_name.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/base/process_memory.h"
#include "console/base/user_directories.h"
#include "console/studbook/loading_output.h"
#include "console/studbook/open_tables.h"
#include "console/tables/animals_table.h"
#include "console/tables/events_table.h"
#include "console/tables/locations_table.h"

namespace spx::console {
namespace {

/// The rows of a table, and how many bytes of records they have filled.
class CountedRows : public RowSource {
 public:
  CountedRows(std::unique_ptr<RowSource> rows, std::atomic<std::size_t>& filled)
      : rows_(std::move(rows)), filled_(filled) {
    titles_ = rows_->titles();
    fields_ = rows_->fields();
  }

  void settleColumns(std::span<const table_field> fields, const ColumnTitles& columns) override {
    rows_->settleColumns(fields, columns);
  }

  bool next() override {
    if (!rows_->next()) {
      return false;
    }
    cells_ = rows_->row();
    filled_.fetch_add(sizeof(master_data), std::memory_order_relaxed);
    return true;
  }

  std::size_t line() const override { return rows_->line(); }
  std::size_t animalRow() const override { return rows_->animalRow(); }

 private:
  std::unique_ptr<RowSource> rows_;
  std::atomic<std::size_t>& filled_;
};

/// The room for the records of a table that is about to be read. Room that is not used costs no
/// memory; a sequence that outgrows it is held twice while it moves. A quarter more serves the
/// pseudo founders of most studbooks.
class RecordRoom {
 public:
  explicit RecordRoom(const studbook_tables& tables) {
    const auto& estimate = tables.animals.estimate_rows;
    const std::size_t rows = estimate ? estimate() : 0;
    if (!Animals.initialize(rows + rows / 4)) {
      throw Failure(tables.file + ": there is not enough memory for so many animals");
    }
    pages_.emplace(Animals.records.data(), rows * sizeof(master_data), filled_);
  }

  /// The table, whose rows will fill the room.
  table_source filledBy(const table_source& table) {
    if (!table.open) {
      return table;
    }
    table_source counted = table;
    counted.open = [this, open = table.open] { return std::make_unique<CountedRows>(open(), filled_); };
    return counted;
  }

 private:
  std::atomic<std::size_t> filled_ = 0;
  std::optional<PageProvider> pages_;  ///< ends before what it reads does
};

/// Reads one table; what is wrong with it as a whole is one more fault.
void readTable(const table_source& table, Faults& faults, const std::function<void()>& read) {
  if (!table.open) {
    return;
  }
  try {
    read();
  } catch (const TableError& error) {
    faults.add({table.name, error.line(), "", "", error.what()});
  }
}

void readTables(const studbook_tables& tables, const char* refused) {
  RecordRoom room(tables);
  const table_source animals = room.filledBy(tables.animals);
  LocationRegistry locations;
  Faults faults;
  readTable(tables.locations, faults, [&] { readLocations(tables.locations, locations, faults); });
  readTable(tables.programs, faults, [&] { readPrograms(tables.programs, faults); });
  readTable(animals, faults, [&] { readAnimals(animals, tables.titles, locations, faults); });
  readTable(tables.events, faults, [&] { readEvents(tables.events, locations, faults); });
  if (!faults.empty()) {
    throw Failure(faults.text() + std::to_string(faults.count()) + (faults.count() == 1 ? " fault; " : " faults; ") +
                  refused);
  }
}

/// Only animals of the tables have a location: the pseudo parents live nowhere.
bool isFromTable(const master_data& animal) {
  return animal.birth.location != 0;
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

void completeRecords(const std::string& file, const std::string& format) {
  std::size_t pseudo = 0;
  for (master_data& animal : Animals.records) {
    if (!isFromTable(animal)) {
      continue;
    }
    settleEnd(animal);
    if (isPseudoIndividual(animal.stud_id)) {
      ++pseudo;
    } else {
      noteDates(animal);
    }
  }
  Book.name = qs_lib::splitFileName(file).name;
  Book.format = format;
  if (pseudo != 0) {
    std::cerr << "spx: " << pseudo << (pseudo == 1 ? " animal counts" : " animals count")
              << " as pseudo individuals by their identifiers (P..., WILD..., UNK..., MULT..., "
                 "GROUP..., HERD..., COLONY...)\n";
  }
}

void resolveParents(const LoadingOutput& output) {
  const std::size_t loaded = Animals.records.size();
  Animals.validate();
  const std::size_t founders = Animals.records.size() - loaded;
  if (founders == 0) {
    return;
  }
  std::cerr << "spx: " << founders
            << (founders == 1 ? " parent without a record became a pseudo founder"
                              : " parents without a record became pseudo founders")
            << " (named " << output.parentWarnings() << " times)\n";
}

/// No lookup: no command searches for more than a few animals by their IDs.
void buildDerived() {
  // In birth order at once: the keys are given in it.
  Animals.createIndex(SORT_FIELD::BIRTH);
  Animals.assignIdKeys();
  Animals.populationPedigree();
  Animals.flagBreeders();
}

void load(studbook_tables tables) {
  const LoadingOutput output;
  readTables(tables, "nothing was loaded");
  completeRecords(tables.file, tables.format);
  tables = {};
  resolveParents(output);
  buildDerived();
}

}  // namespace

void dropStudbook() {
  Animals.clearStudbook();
  MetaPop = MetaPopulation();
  Management = BreedingProgram();
  View.clearView();  // before the taxa, of which it may hold some
  Subspecies = SubTaxa();
  user_field_list.clear();
  Book = Studbook();
}

void loadStudbook(const studbook_files& files) {
  dropStudbook();
  loadStudbook(openTables(files));
}

void loadStudbook(studbook_tables tables) {
  dropStudbook();
  makeUserDirectories();
  try {
    load(std::move(tables));
  } catch (...) {
    dropStudbook();
    throw;
  }
}

void checkTables(const studbook_tables& tables, const char* refused) {
  dropStudbook();
  try {
    const LoadingOutput output;
    readTables(tables, refused);
  } catch (...) {
    dropStudbook();
    throw;
  }
  dropStudbook();
}

}  // namespace spx::console
