#pragma once

#include <cstdint>
#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// What the values of a user-defined field are.
enum class FIELD_TYPE : std::uint32_t { TEXT, INTEGER, REAL, BOOLEAN, DATE };

/// The display name: "text", "integer", "real", "boolean" or "date"; empty for any other value.
SPX_EXPORT std::string getFieldTypeName(FIELD_TYPE type);
}  // namespace qs_lib
