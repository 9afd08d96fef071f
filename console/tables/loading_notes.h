#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "spx/core/master_data.h"

namespace spx::console {

/// The animal of an event (the position of its record) and the line of the event's row.
struct event_row {
  std::uint32_t animal;
  std::uint32_t line;
};

/// What is known about the loaded studbook besides its records. The parents without a record are in
/// Animals.missing_parents, the user-defined columns in user_field_list.
struct loading_notes {
  std::string animals_table;               ///< the table of animals, as messages name it: a file, or "FILE (animals)"
  std::vector<std::uint32_t> lines;        ///< by record: the line of its row; records with 0, or beyond the end,
                                           ///< have no row
  std::string events_table;                ///< the table of events, likewise
  std::vector<event_row> events;           ///< its rows, in their order
  std::vector<std::string> new_locations;  ///< names of locations that no locations table lists, in the order of
                                           ///< their first use
  std::vector<position> placeholders;      ///< animals with a row whose IDs are those of pseudo individuals

  /// The line of the animal's row in the table, or its row number in a studbook file; 0 for a record
  /// without a row, which stands in for a parent.
  std::size_t lineOf(position animal) const { return animal < lines.size() ? lines[animal] : 0; }

  /// Where the row of the animal is, as messages say it: "FILE:LINE"; empty without a row.
  std::string placeOf(position animal) const {
    const std::size_t line = lineOf(animal);
    return line == 0 ? std::string() : animals_table + ":" + std::to_string(line);
  }
};

/// Whether a record has a row in the table of animals: only such animals have a birth location; the
/// pseudo individuals that stand in for parents have none.
inline bool hasRow(const master_data& animal) {
  return animal.birth.location != 0;
}

}  // namespace spx::console
