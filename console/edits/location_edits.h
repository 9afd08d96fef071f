#pragma once

#include <string>
#include <vector>

#include "console/edits/known_names.h"
#include "console/edits/studbook_edit.h"

/// Changes of the locations of a studbook. A location goes by its name or its identifier. Each
/// throws UsageError for unknown fields and Failure for what cannot be done.
namespace spx::console {

/// Adds a location to the table.
/// @param within  the location that contains it, or empty: then the identifier is among the values,
///                or all locations are of one level
/// @param values  `id` among them sets the identifier; else it is the next one that is free
void addLocation(StudbookEdit& edit, const std::string& name, const std::string& within,
                 const std::vector<field_value>& values);

/// Gives a location other values. Animals and events follow a new name or identifier.
void setLocation(StudbookEdit& edit, const std::string& location, const std::vector<field_value>& values);

/// Makes one location of two: animals and events of the other are then of the one that is kept.
void mergeLocations(StudbookEdit& edit, const std::string& kept, const std::string& other);

}  // namespace spx::console
