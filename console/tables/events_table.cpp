#include "console/tables/events_table.h"

#include <string_view>
#include <unordered_map>

#include "spx/core/animal_data.h"

#include "console/tables/animals_table.h"
#include "console/tables/event_cells.h"
#include "console/tables/field_table.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

enum event_field : std::size_t { ANIMAL, DATE, KIND, LOCATION, ACCURACY, RANGE };

constexpr table_field EVENT_FIELDS[] = {
    ID_FIELD,
    {"date", {"event_date"}, true},
    {"event", {"event_type", "move", "type"}, true},
    {"location", {"deme"}},
    {"accuracy"},
    {"range"},
};

constexpr event_fields DATED_FIELDS = {DATE, ACCURACY, RANGE, LOCATION};

class EventsReader {
 public:
  EventsReader(const table_source& source, LocationRegistry& locations, Faults& faults)
      : table_(source, EVENT_FIELDS, ANIMAL, {}, faults), locations_(locations) {
    animals_.reserve(Animals.records.size());
    for (master_data& animal : Animals.records) {
      // Only animals of the tables have a location; the pseudo parents take no events.
      if (animal.birth.location != 0) animals_.try_emplace(animal.stud_id, &animal);
    }
  }

  void read() {
    while (table_.next()) readRow();
  }

 private:
  void readRow() {
    move_data event;
    initializeMove(event);
    event.event = table_.read(KIND, parseMoveType, "kind of event");
    readEventCells(table_, DATED_FIELDS, locations_, event);
    if (isUnknown(table_[DATE])) table_.addFault(DATE, "the date is missing");
    if (isSameWord(table_[KIND], "birth") || isSameWord(table_[KIND], "death")) {
      table_.addFault(KIND, quotedText(table_[KIND]) + " belongs in the table of animals");
    }
    const auto animal = animals_.find(table_[ANIMAL]);
    if (animal == animals_.end()) {
      return table_.addFault(ANIMAL, "the animal is not in the table of animals");
    }
    append(*animal->second, event);
  }

  static void append(master_data& animal, move_data& event) {
    if (event.location == 0) stayThere(animal, event);
    animal.moves.push_back(std::move(event));
  }

  static void stayThere(const master_data& animal, move_data& event) {
    const move_data& last = animal.moves.empty() ? animal.birth : animal.moves.back();
    event.location = last.location;
    event.number = last.number;
  }

  FieldTable table_;
  LocationRegistry& locations_;
  // The records do not move while events are read, so the texts may be theirs.
  std::unordered_map<std::string_view, master_data*> animals_;
};

}  // namespace

std::span<const table_field> eventFields() {
  return EVENT_FIELDS;
}

void readEvents(const table_source& source, LocationRegistry& locations, Faults& faults) {
  EventsReader(source, locations, faults).read();
}

}  // namespace spx::console
