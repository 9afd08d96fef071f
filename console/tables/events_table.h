#pragma once

#include <string>

#include "console/tables/faults.h"
#include "console/tables/location_registry.h"

namespace spx::console {

/// Reads the table of events (id, date, event, location, accuracy, range) and appends each event to
/// the moves of its animal, in the order of the table. An event without a location happens where
/// the animal is. Births and deaths belong in the table of animals and are faults here. Of several
/// animals with one ID the first one has the events. Throws TableError and UsageError.
void readEvents(const std::string& file, LocationRegistry& locations, Faults& faults);

}  // namespace spx::console
