#include "console/edits/event_edits.h"

#include <algorithm>

#include "console/base/failure.h"
#include "console/edits/cell_meaning.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr const char* COMPARED_FIELDS[] = {"date", "event", "location"};

std::vector<row_number> eventsOf(StudbookEdit& edit, row_number animal) {
  return edit.find("events", "animal", std::to_string(animal));
}

std::string listOf(StudbookEdit& edit, const std::vector<row_number>& events) {
  std::string text;
  for (std::size_t event = 0; event < events.size(); ++event) {
    text += "\n  " + std::to_string(event + 1) + "  " + eventText(edit, events[event]);
  }
  return text;
}

/// The N-th event of an animal, counted from 1.
row_number numberedEvent(StudbookEdit& edit, row_number animal, std::size_t number) {
  const std::vector<row_number> events = eventsOf(edit, animal);
  if (number > events.size()) {
    throw Failure(animalName(edit, animal) + " has " + std::to_string(events.size()) +
                  (events.size() == 1 ? " event:" : " events:") + listOf(edit, events));
  }
  return events[number - 1];
}

/// Throws when several events of one animal match: the keeper has to say which one is meant.
void refuseSeveral(StudbookEdit& edit, row_number animal, const std::vector<row_number>& events) {
  if (events.size() > 1) {
    throw Failure(animalName(edit, animal) + " has " + std::to_string(events.size()) +
                  " events; say which with --number N or --where FIELD=VALUE:" + listOf(edit, events));
  }
}

std::vector<row_number> findEvents(StudbookEdit& edit, const event_choice& choice) {
  if (choice.ids.empty() && choice.where.empty()) {
    throw UsageError("no event is named; give an ID, or choose events with --where FIELD=VALUE");
  }
  if (choice.number != 0 && choice.ids.size() != 1) {
    throw UsageError("--number counts the events of one animal; give its ID");
  }
  std::vector<row_number> events;
  for (const std::string& id : choice.ids) {
    const row_number animal = findAnimal(edit, id);
    std::vector<row_number> chosen = eventsOf(edit, animal);
    if (choice.number != 0) {
      chosen = {numberedEvent(edit, animal, choice.number)};
    } else if (choice.where.empty()) {
      refuseSeveral(edit, animal, chosen);
    }
    events.insert(events.end(), chosen.begin(), chosen.end());
  }
  if (choice.ids.empty()) {
    events = edit.rows("events");
  }
  events = rowsWhere(edit, "events", std::move(events), choice.where);
  if (events.empty()) {
    throw Failure("no events match");
  }
  return events;
}

/// A location by its identifier where the table of locations lists it.
std::string placeOf(StudbookEdit& edit, const std::string& text) {
  const std::vector<row_number> named = edit.find("locations", "name", text);
  return named.size() == 1 ? edit.cell("locations", named.front(), "id") : text;
}

/// Where an animal came to last up to a day, as far as its dates tell.
struct last_arrival {
  std::string place;
  std::string date;
};

last_arrival lastArrival(StudbookEdit& edit, row_number animal, qs_lib::day_number day) {
  last_arrival last = {edit.cell("animals", animal, "birth_location"), edit.cell("animals", animal, "birth_date")};
  qs_lib::day_number since = 0;
  for (const row_number event : eventsOf(edit, animal)) {
    const std::string date = edit.cell("events", event, "date");
    const auto when = parseDate(date);
    if (when && when->day <= day && when->day >= since) {
      const bool is_arrival = parseMoveType(edit.cell("events", event, "event")) == MOVE_TYPE::ARRIVAL;
      last = {is_arrival ? edit.cell("events", event, "location") : std::string(), date};
      since = when->day;
    }
  }
  return last;
}

/// Nobody arrives where he is.
void refuseSecondArrival(StudbookEdit& edit, row_number animal, const std::vector<field_value>& values) {
  const auto value = [&](const char* field) {
    const auto found =
        std::find_if(values.begin(), values.end(), [&](const field_value& each) { return each.field == field; });
    return found == values.end() ? std::string() : found->value;
  };
  const auto when = parseDate(value("date"));
  if (!when || isUnknownId(value("location")) || parseMoveType(value("event")) != MOVE_TYPE::ARRIVAL) {
    return;
  }
  const last_arrival last = lastArrival(edit, animal, when->day);
  if (!last.place.empty() && placeOf(edit, last.place) == placeOf(edit, value("location"))) {
    throw Failure(animalName(edit, animal) + " is at " + value("location") + " already" +
                  (last.date.empty() ? "" : ", since " + last.date) +
                  "; nothing was changed\n  --anyway adds the event");
  }
}

}  // namespace

void addEvents(StudbookEdit& edit, const animal_choice& choice, const std::vector<field_value>& values,
               edit_freedom freedom) {
  const std::vector<row_number> animals = findAnimals(edit, choice);
  for (const char* field : {"id", "date", "event"}) {
    edit.needField("events", field);
  }
  const std::vector<field_value> known = KnownNames(edit, "events", freedom.allow_new).values(values);
  for (const row_number animal : animals) {
    if (!freedom.anyway) {
      refuseSecondArrival(edit, animal, known);
    }
    std::vector<field_value> cells = {{"animal", std::to_string(animal)}};
    cells.insert(cells.end(), known.begin(), known.end());
    edit.insert("events", cells);
  }
}

void setEvents(StudbookEdit& edit, const event_choice& choice, const std::vector<field_value>& values,
               edit_freedom freedom) {
  const std::vector<row_number> events = findEvents(edit, choice);
  const std::vector<field_value> known = KnownNames(edit, "events", freedom.allow_new).values(values);
  for (const row_number event : events) {
    for (const field_value& each : known) {
      edit.set("events", event, each.field, each.value);
    }
  }
}

void removeEvents(StudbookEdit& edit, const event_choice& choice) {
  for (const row_number event : findEvents(edit, choice)) {
    edit.remove("events", event);
  }
}

void moveEvents(StudbookEdit& edit, row_number from, row_number to) {
  const std::vector<row_number> there = eventsOf(edit, to);
  for (const row_number event : eventsOf(edit, from)) {
    const bool is_known = std::any_of(there.begin(), there.end(), [&](row_number other) {
      return std::all_of(std::begin(COMPARED_FIELDS), std::end(COMPARED_FIELDS), [&](const char* field) {
        return sameMeaning(field, edit.cell("events", event, field), edit.cell("events", other, field));
      });
    });
    if (is_known) {
      edit.remove("events", event);
    } else {
      edit.set("events", event, "animal", std::to_string(to));
    }
  }
}

std::string eventText(StudbookEdit& edit, row_number event) {
  std::string text;
  for (const char* field : COMPARED_FIELDS) {
    const std::string value = edit.cell("events", event, field);
    text += (text.empty() || value.empty() ? "" : " ") + value;
  }
  return text;
}

}  // namespace spx::console
