#pragma once

#include <string>

#include "console/tables/faults.h"
#include "console/tables/location_registry.h"

namespace spx::console {

/// Reads the table of locations (level, id, name, latitude, longitude) and registers levels and
/// demes. The level named with an identifier of depth n is the n-th one; depths without a name are
/// "Level n". Throws TableError and UsageError.
void readLocations(const std::string& file, LocationRegistry& locations, Faults& faults);

/// Reads the table of breeding programmes (name) and registers them; likewise.
void readPrograms(const std::string& file, Faults& faults);

}  // namespace spx::console
