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

/// The animal that is typed: its ID, or of animals with the same ID "ID#N", counted from 1 in the
/// order of the rows. Throws Failure, with the nearest ID, when there is no such animal, and with
/// a list when the ID alone means several.
row_number findAnimal(StudbookEdit& edit, const std::string& typed);

/// The animals in the order in which they are typed, or else, those of which all conditions hold, in
/// the order of the rows. Throws UsageError when nothing is chosen, Failure when no animal is
/// left.
std::vector<row_number> findAnimals(StudbookEdit& edit, const animal_choice& choice);

/// The ID, with "#N" where several animals have it.
std::string animalName(StudbookEdit& edit, row_number animal);

/// Of these rows those whose cells mean what every condition says; see sameMeaning.
std::vector<row_number> rowsWhere(StudbookEdit& edit, const std::string& table, std::vector<row_number> rows,
                                  const std::vector<std::string>& conditions);

}  // namespace spx::console
