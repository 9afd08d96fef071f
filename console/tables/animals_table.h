#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "console/tables/column_titles.h"
#include "console/tables/faults.h"
#include "console/tables/location_registry.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// How many records a table of animals leads to: its rows and the pseudo founders that will stand
/// for the distinct parents without a row and for wild mates. A first pass over the table, with 8
/// bytes an ID. What is wrong with the table is left to readAnimals: the count ends there. 0 for a
/// table that can be read only once.
std::size_t countRecords(const table_source& source, std::span<const title_choice> choices);

/// Reads the table of animals and adds a record for each row to the store, with taxa and
/// user-defined fields (every column that is no known field). Throws TableError and UsageError.
void readAnimals(const table_source& source, std::span<const title_choice> choices,
                 LocationRegistry& locations, Faults& faults);

/// The fields of the table, in the order in which the documentation lists them.
std::span<const table_field> animalFields();

/// The titles under which the tables give an animal's ID.
inline constexpr table_field ID_FIELD = {
    "id", {"stud_id", "studbook", "individual", "ind", "animal"}, true};

}  // namespace spx::console
