#pragma once

#include <string>
#include <vector>

#include "console/edits/known_names.h"
#include "console/edits/studbook_edit.h"

namespace spx::console {

/// Which animals a change is for.
struct animal_choice {
  std::vector<std::string> ids;    ///< as typed
  std::vector<std::string> where;  ///< FIELD=VALUE: all of them hold
};

/// Finds the animal that was typed: by its ID, or among animals with the same ID by "ID#N", counted
/// from 1 in the order of the rows. Throws Failure, with the nearest ID, when there is no such
/// animal, and with a list when the ID alone means several.
row_number findAnimal(StudbookEdit& edit, const std::string& typed);

/// The animals named by ID, in the order in which they were typed; without IDs, those that meet all
/// conditions, in the order of the rows. Throws UsageError when nothing is chosen, Failure when no
/// animal is left.
std::vector<row_number> findAnimals(StudbookEdit& edit, const animal_choice& choice);

/// The ID, with "#N" where several animals have it.
std::string animalName(StudbookEdit& edit, row_number animal);

/// Those of the rows that meet every condition; values are compared by sameMeaning.
std::vector<row_number> rowsWhere(StudbookEdit& edit, const std::string& table, std::vector<row_number> rows,
                                  const std::vector<std::string>& conditions);

}  // namespace spx::console
