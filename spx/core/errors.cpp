#include "spx/core/errors.h"

#include "spx/support/console.h"

namespace spx {

bool spxError(std::int32_t code) {
  return spxError("#" + std::to_string(code));
}

bool spxError(const std::string& message) {
  qs_lib::errorMessage(message);
  return true;
}

bool spxErrorFile(const std::string&) {
  return true;
}

}  // namespace spx
