#pragma once

#include <string>
#include <vector>

#include "console/edits/studbook_edit.h"

namespace spx::console {

/// What a change may do despite warnings.
struct edit_freedom {
  bool anyway = false;     ///< also what makes no sense
  bool allow_new = false;  ///< fields, locations, taxa and parents that the studbook does not know
};

/// Checks what is typed for the fields of one table of a studbook file: field names, locations and
/// taxa. An unknown one throws UsageError, which suggests the nearest known one, unless new ones
/// are allowed.
class KnownNames {
 public:
  /// @param allow_new  unknown fields are added, unknown locations and taxa accepted
  KnownNames(StudbookEdit& edit, std::string table, bool allow_new);

  /// The column of a field, which may be typed by its name, the title of its column or another
  /// title of the field, in any case.
  std::string field(const std::string& typed);

  /// The same for several fields with their values, which are trimmed and checked. A field that is
  /// named twice, and the ID, are refused.
  std::vector<field_value> values(const std::vector<field_value>& typed);

  /// Refuses a date, a sex or an event that cannot be read, and a location or a taxon that no cell has yet.
  void check(const std::string& field, const std::string& value);

 private:
  const std::string* findColumn(const std::string& typed);
  std::vector<std::string> fieldNames();

  StudbookEdit& edit_;
  std::string table_;
  bool allow_new_;
};

/// The names and identifiers of the locations that a studbook knows: those of its table, and those
/// that its animals and events name.
std::vector<std::string> knownPlaces(StudbookEdit& edit);

/// The IDs of all animals.
std::vector<std::string> knownIds(StudbookEdit& edit);

/// Reads "FIELD=VALUE"; the value may be empty. Throws UsageError.
field_value parseFieldValue(const std::string& text);

}  // namespace spx::console
