#pragma once

#include <span>
#include <string>

#include "console/tables/column_titles.h"
#include "console/tables/faults.h"
#include "console/tables/loading_notes.h"
#include "console/tables/location_registry.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// Reads the table of animals and adds a record for each row to the store, with taxa and
/// user-defined fields (every column that is not a known field); wild mates of known parents get
/// identities. Throws TableError and UsageError.
/// @param notes  takes the name of the table and the lines of the rows
void readAnimals(const table_source& source, std::span<const title_choice> choices, LocationRegistry& locations,
                 Faults& faults, loading_notes& notes);

/// The fields of the table, in the order in which the documentation lists them.
std::span<const table_field> animalFields();

/// The titles under which the tables give an animal's ID.
inline constexpr table_field ID_FIELD = {"id", {"stud_id", "studbook", "individual", "ind", "animal"}, true};

}  // namespace spx::console
