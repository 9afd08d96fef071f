#pragma once

#include <string_view>

namespace spx::console {

/// Whether two cells of a field mean the same: "F" and "female", "1990-05" and "1990-5" where both
/// can be read, "" and "NA". Texts of other fields are compared byte for byte.
/// @param field  the column's name in the database
bool sameMeaning(std::string_view field, std::string_view a, std::string_view b);

/// Whether a cell of the field is a parent's ID.
bool isParentField(std::string_view field);

/// Whether a cell of the field is the name or the identifier of a location.
bool isPlaceField(std::string_view field);

}  // namespace spx::console
