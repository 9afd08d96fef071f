#pragma once

#include <string>

#include "console/edits/studbook_edit.h"

/// Changes of user-defined fields; the built-in fields always exist. Each throws UsageError.
namespace spx::console {

/// @param table  "animals" or "events"
void addField(StudbookEdit& edit, const std::string& table, const std::string& title);

void renameField(StudbookEdit& edit, const std::string& table, const std::string& title, const std::string& new_title);

/// Removes a field with its values.
void removeField(StudbookEdit& edit, const std::string& table, const std::string& title);

}  // namespace spx::console
