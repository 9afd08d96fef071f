#pragma once

#include <span>

#include "console/tables/column_titles.h"
#include "console/tables/faults.h"
#include "console/tables/location_registry.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// Reads the table of locations (level, id, name, latitude, longitude) and registers levels and
/// demes. The level named in a row whose identifier has depth n is the n-th one; levels without a
/// name are called "Level n". Throws TableError and UsageError.
void readLocations(const table_source& source, LocationRegistry& locations, Faults& faults);

/// Reads the table of breeding programmes (name) and registers them; likewise.
void readPrograms(const table_source& source, Faults& faults);

/// The fields of these tables.
std::span<const table_field> locationFields();
std::span<const table_field> programFields();

}  // namespace spx::console
