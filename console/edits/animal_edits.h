#pragma once

#include <string>
#include <vector>

#include "console/edits/animal_choice.h"

/// Changes of animals. Each throws UsageError for unknown fields, locations and taxa, and Failure for what
/// cannot be done.
namespace spx::console {

/// Adds an animal after all others. @return its row
row_number addAnimal(StudbookEdit& edit, const std::string& id, const std::vector<field_value>& values,
                     edit_freedom freedom);

/// Changes values of animals.
void setAnimals(StudbookEdit& edit, const animal_choice& choice, const std::vector<field_value>& values,
                edit_freedom freedom);

/// Removes animals with their events. One that is a parent is refused.
void removeAnimals(StudbookEdit& edit, const animal_choice& choice, edit_freedom freedom);

/// Gives an animal another ID, also where it is named as a parent. Of animals with the same ID the
/// first is the parent.
void renameAnimal(StudbookEdit& edit, const std::string& id, const std::string& new_id);

/// Merges two records into one: the first animal takes over the values and events that it lacks, and the
/// offspring. Contradicting values are refused unless the caller gives new ones; with `freedom.anyway`
/// those of the first animal are kept.
void mergeAnimals(StudbookEdit& edit, const std::string& kept, const std::string& other,
                  const std::vector<field_value>& values, edit_freedom freedom);

/// Records the death or the loss to follow-up of animals. Refused when one is already recorded.
/// @param event   "death" or "lost-to-follow-up"
/// @param place   where; may be empty
void endAnimals(StudbookEdit& edit, const animal_choice& choice, const std::string& event, const std::string& date,
                const std::string& place, edit_freedom freedom);

}  // namespace spx::console
