#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "console/edits/animal_choice.h"

namespace spx::console {

/// Which events a change is for.
struct event_choice {
  std::vector<std::string> ids;    ///< of the animals, as typed; empty: of all animals
  std::vector<std::string> where;  ///< FIELD=VALUE of the events: all of them hold
  std::size_t number = 0;          ///< the N-th of the animal's events; 0: any
};

/// Adds an event to each of the animals, after all others. Throws what the changes of animals throw.
void addEvents(StudbookEdit& edit, const animal_choice& choice, const std::vector<field_value>& values,
               edit_freedom freedom);

/// Changes values of events.
void setEvents(StudbookEdit& edit, const event_choice& choice, const std::vector<field_value>& values,
               edit_freedom freedom);

void removeEvents(StudbookEdit& edit, const event_choice& choice);

/// Gives the events of one animal to another; those that it has already are removed.
void moveEvents(StudbookEdit& edit, row_number from, row_number to);

/// An event in a few words: its date, kind and location.
std::string eventText(StudbookEdit& edit, row_number event);

}  // namespace spx::console
