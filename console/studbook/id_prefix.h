#pragma once

#include <string>

#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// The tables with a prefix before every ID, so that no ID is taken for a placeholder: the IDs of animals and
/// events, and those of parents that have a row of their own or are not placeholders (WILD, UNK..., MULT... are
/// unchanged). Reads the table of animals once for the IDs in it, so it cannot come from a pipe.
///
/// Throws UsageError when the prefix would make every ID a placeholder, and what reading the table throws.
studbook_tables withIdPrefix(const studbook_tables& tables, const std::string& prefix);

}  // namespace spx::console
