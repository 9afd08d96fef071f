#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "console/edits/edition.h"

namespace spx::console {

enum class ROW_CHANGE : std::uint8_t {
  ADDED,
  REMOVED,
  CHANGED,
  RENAMED  ///< a guess: an animal with another ID and the same birth, parents and sex
};

/// A cell that differs between two editions.
struct cell_difference {
  edition_column column;  ///< as the second edition has it
  std::string before;     ///< empty when the first has no such column
  std::string after;
};

/// A row that differs between two editions.
struct row_difference {
  std::string table;  ///< "animals", "events", "locations" or "programs"
  ROW_CHANGE change = ROW_CHANGE::CHANGED;
  std::string animal;  ///< the ID of the animal, or of the event's animal, in the second edition; when removed,
                       ///< in the first
  std::string name;    ///< of an event its date and kind, of a location its name; else empty
  std::size_t before = EditionTable::NONE;         ///< the row in the first edition
  std::size_t after = EditionTable::NONE;          ///< the row in the second edition
  std::size_t animal_before = EditionTable::NONE;  ///< of an event: the row of its animal in the first edition
  std::size_t animal_after = EditionTable::NONE;
  std::vector<cell_difference> cells;  ///< of a row that is in both; for RENAMED the ID among them
};

/// The differences between two editions of a studbook.
struct edition_differences {
  std::vector<row_difference> rows;  ///< animals, then events, locations and programmes, each in the order of the rows
  std::vector<std::string> new_fields;   ///< titles of the columns that only the second has, of animals and events
  std::vector<std::string> lost_fields;  ///< titles of the columns that only the first has
  std::vector<std::string> lost_tables;  ///< tables that only the first has; their rows are not compared
};

/// Compares two editions by what their cells mean: "F" and "female" are the same. Animals are matched by their IDs (of
/// several with the same ID the first with the first), events of an animal by date and kind, locations by identifier,
/// programmes by name. Cells of columns that the second edition does not have are not compared.
/// Expected linear in the cells; quadratic in the events of one animal.
/// @param former_ids  other IDs of animals of the first edition, by their lines: known renames
edition_differences compareEditions(const edition& before, const edition& after,
                                    const std::map<std::int64_t, std::string>& former_ids = {});

}  // namespace spx::console
