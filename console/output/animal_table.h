#pragma once

#include <string>
#include <vector>

#include "spx/core/master_data.h"

#include "console/output/table.h"

/// Animals as tables. The names of the columns are those of an animals table, for scripts.
namespace spx::console {

/// Which columns of a list of animals people see.
enum class ANIMAL_LIST : std::uint8_t {
  ALL,    ///< with their status
  LIVING  ///< with their location, without the status, which is the same for all
};

/// A row per animal. Age, status and location are those on the view's day.
/// @param animals  positions in the store, in the order in which they are shown
Table animalTable(std::vector<position> animals, ANIMAL_LIST list);

/// One animal as a record, with the names of its places.
Table animalRecord(position animal);

/// The events of an animal, a row each.
Table eventTable(const master_data& animal);

/// Sorts animals by studbook ID in natural order: 2 before 10. n log n.
void sortNaturally(std::vector<position>& animals);

/// Sorts animals by birth date, unknown ones first, then by studbook ID; n log n.
void sortByBirth(std::vector<position>& animals);

/// What people see of a parent's ID: "unknown" and "wild" for the placeholders.
std::string parentText(const std::string& id);

/// The name of a location, with its identifier unless the name is the identifier; empty when the location is not known.
std::string placeText(packed_deme location);

}  // namespace spx::console
