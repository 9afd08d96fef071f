#pragma once

#include <string>
#include <vector>

/// Changes of a studbook file by hand. Each is one transaction: it is made as a whole, or throws
/// and changes nothing. The whole studbook is read with the change before it lasts, so that what a
/// table could not hold is refused for the same reasons, in Failure.
namespace spx::console {

/// The user's word that a field has a certain value.
struct field_value {
  std::string field;  ///< its name or title, in any case
  std::string value;  ///< as a cell of the table would have it
};

/// Reads "FIELD=VALUE"; the value may be empty. Throws UsageError.
field_value parseFieldValue(const std::string& text);

/// Gives an animal other values. Throws UsageError for fields that do not exist or occur twice and
/// for the ID, Failure when no animal, or more than one, has that ID.
/// @return the parents among the values that have no record: they become pseudo founders
std::vector<std::string> setAnimal(const std::string& file, const std::string& id,
                                   const std::vector<field_value>& values);

/// Adds an animal at the end. Throws likewise, and Failure when an animal has that ID.
std::vector<std::string> addAnimal(const std::string& file, const std::string& id,
                                   const std::vector<field_value>& values);

/// Adds an event after all others. Throws likewise.
void addEvent(const std::string& file, const std::string& id, const std::vector<field_value>& values);

}  // namespace spx::console
