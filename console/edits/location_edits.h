#pragma once

#include <string>
#include <vector>

#include "console/edits/known_names.h"
#include "console/edits/studbook_edit.h"

/// Changes of the locations of a studbook. Locations are given by name or identifier. Each throws
/// UsageError for unknown fields and Failure for what cannot be done.
namespace spx::console {

/// Adds a location to the table.
/// @param within  the location that contains it, or empty: then `values` must contain the
///                identifier, or all locations are of one level
/// @param values  `id` among them sets the identifier; otherwise the next free one is used
void addLocation(StudbookEdit& edit, const std::string& name, const std::string& within,
                 const std::vector<field_value>& values);

/// Changes values of a location. Animals and events are updated to a new name or identifier.
void setLocation(StudbookEdit& edit, const std::string& location, const std::vector<field_value>& values);

/// Merges two locations: animals and events of the other move to the one that is kept.
void mergeLocations(StudbookEdit& edit, const std::string& kept, const std::string& other);

}  // namespace spx::console
