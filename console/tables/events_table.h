#pragma once

#include <span>

#include "console/tables/column_titles.h"
#include "console/tables/faults.h"
#include "console/tables/loading_notes.h"
#include "console/tables/location_registry.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// Reads the table of events (id, date, event, location, accuracy, range) and appends each event to
/// the moves of its animal, in the order of the table. An event without a location happens where the animal is at
/// that time. Births and deaths belong in the table of animals and are faults here. Of several animals with the same ID
/// the first gets the events. Records the line of each event in the notes. Throws TableError and UsageError.
void readEvents(const table_source& source, LocationRegistry& locations, Faults& faults, loading_notes& notes);

/// The fields of that table.
std::span<const table_field> eventFields();

}  // namespace spx::console
