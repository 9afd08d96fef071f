#include "spx/support/field_type.h"

#include <iterator>

namespace qs_lib {
std::string getFieldTypeName(FIELD_TYPE type) {
  constexpr const char* NAMES[] = {"text", "integer", "real", "boolean", "date"};
  const auto index = static_cast<std::uint32_t>(type);
  return index < std::size(NAMES) ? NAMES[index] : "";
}
}  // namespace qs_lib
