#include "console/tables/events_table.h"

#include <string_view>
#include <unordered_map>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/support/text_hash.h"

#include "console/base/quoted_text.h"
#include "console/tables/animals_table.h"
#include "console/tables/event_cells.h"
#include "console/tables/field_table.h"
#include "console/tables/loading_notes.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

enum event_field : std::size_t { ANIMAL, DATE, KIND, LOCATION, ACCURACY, RANGE };

constexpr table_field EVENT_FIELDS[] = {
    ID_FIELD,
    {"date", {"event_date", "date_of_event", "day", "datum", "fecha", "date_evenement"}, true},
    {"event", {"event_type", "move", "type", "kind", "transaction", "ereignis", "evenement", "evento"}, true},
    {"location", {"deme", "place", "site", "institution", "zoo", "ort", "lieu", "lugar"}},
    {"accuracy"},
    {"range"},
};

constexpr event_fields DATED_FIELDS = {DATE, ACCURACY, RANGE, LOCATION};

class EventsReader {
 public:
  EventsReader(const table_source& source, LocationRegistry& locations, Faults& faults, loading_notes& notes)
      : table_(source, EVENT_FIELDS, ANIMAL, faults), locations_(locations), notes_(notes) {
    notes_.events_table = source.name;
    for (master_data& animal : Animals.records) {
      if (hasRow(animal)) {
        rows_.push_back(&animal);
      }
    }
  }

  void read() {
    while (table_.next()) {
      readRow();
    }
  }

 private:
  void readRow() {
    move_data event;
    initializeMove(event);
    event.event = table_.read(KIND, parseMoveType, KIND_OF_EVENT);
    readEventCells(table_, DATED_FIELDS, locations_, event);
    if (isUnknown(table_[DATE])) {
      table_.addFault(DATE, "the date is missing");
    }
    if (isSameWord(table_[KIND], "birth") || isSameWord(table_[KIND], "death")) {
      table_.addFault(KIND, quotedText(table_[KIND]) + " belongs in the table of animals");
    }
    master_data* animal = findAnimal(table_[ANIMAL]);
    if (animal == nullptr) {
      return table_.addFault(ANIMAL, "the animal is not in the table of animals");
    }
    append(*animal, event);
    notes_.events.push_back(
        {static_cast<std::uint32_t>(animal - Animals.records.data()), static_cast<std::uint32_t>(table_.line())});
  }

  /// Finds the animal by its row where that is known, and otherwise by ID; the index of IDs is
  /// built only when it is needed.
  master_data* findAnimal(std::string_view id) {
    const std::size_t row = table_.animalRow();
    if (row != 0 && row <= rows_.size() && rows_[row - 1]->stud_id == id) {
      return rows_[row - 1];
    }
    if (animals_.empty()) {
      animals_.reserve(rows_.size());
      for (master_data* animal : rows_) {
        animals_.try_emplace(animal->stud_id, animal);
      }
    }
    const auto found = animals_.find(id);
    return found == animals_.end() ? nullptr : found->second;
  }

  static void append(master_data& animal, move_data& event) {
    if (event.location == 0) {
      stayThere(animal, event);
    }
    animal.moves.push_back(std::move(event));
  }

  static void stayThere(const master_data& animal, move_data& event) {
    const move_data& last = animal.moves.empty() ? animal.birth : animal.moves.back();
    event.location = last.location;
    event.number = last.number;
  }

  FieldTable table_;
  LocationRegistry& locations_;
  loading_notes& notes_;
  // The records do not move while events are read, so pointers to them and views of their IDs stay valid.
  std::vector<master_data*> rows_;
  std::unordered_map<std::string_view, master_data*, qs_lib::text_hash> animals_;
};

}  // namespace

std::span<const table_field> eventFields() {
  return EVENT_FIELDS;
}

void readEvents(const table_source& source, LocationRegistry& locations, Faults& faults, loading_notes& notes) {
  EventsReader(source, locations, faults, notes).read();
}

}  // namespace spx::console
