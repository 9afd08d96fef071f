#pragma once

#include <cstddef>

#include "spx/core/master_data.h"

#include "console/tables/field_table.h"
#include "console/tables/location_registry.h"

namespace spx::console {

/// What was expected in place of a refused event, for messages.
inline constexpr char KIND_OF_EVENT[] =
    "kind of event (from wild, arrival, released, lost-to-follow-up, death, surplus; population, "
    "social or management, each with in or out)";

/// The fields that say when and where an event happened.
struct event_fields {
  std::size_t date;
  std::size_t accuracy;
  std::size_t range;
  std::size_t location;
};

/// Fills date, accuracy, range, location and number of an event from the row. The accuracy follows
/// from the form of the date unless its column, or a range, gives another one; without a date it is
/// "unknown". Location and number stay 0 when no location is given.
void readEventCells(FieldTable& table, const event_fields& fields, LocationRegistry& locations, move_data& event);

}  // namespace spx::console
