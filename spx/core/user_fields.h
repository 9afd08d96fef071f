#pragma once

#include <string>
#include <vector>

#include "spx/support/export.h"
#include "spx/support/field_type.h"

namespace spx {

/// The definition of a user-defined field.
struct user_field {
  std::string name;                                    ///< as lists and reports show it
  qs_lib::FIELD_TYPE type = qs_lib::FIELD_TYPE::TEXT;  ///< for display; values are texts
};

/// The user-defined fields of the studbook in use, set by the host. The position here identifies a
/// field: records hold its value, and views refer to it, by the same position.
extern SPX_EXPORT std::vector<user_field> user_field_list;

/// The name of a field; empty beyond the list.
SPX_EXPORT std::string userFieldName(std::size_t field);

/// Lists the fields with their types, in one call of the console.
/// @return false after reporting "No user fields defined" when there are none
SPX_EXPORT bool showUserFields();

}  // namespace spx
