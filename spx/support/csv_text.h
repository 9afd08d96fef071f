#pragma once

#include <string>
#include <string_view>

#include "spx/support/export.h"

namespace qs_lib {
/// Appends a text as a cell of a delimited table. It is quoted with `"`, doubled inside, only when it
/// contains the separator, `"`, `'`, `#`, CR or LF, or begins or ends with a blank.
SPX_EXPORT void appendCsvText(std::string& line, std::string_view text, char separator);
}  // namespace qs_lib
