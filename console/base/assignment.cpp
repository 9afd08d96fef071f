#include "console/base/assignment.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"

namespace spx::console {

assignment splitAssignment(const std::string& text, const std::string& form, const std::string& where) {
  const std::size_t equals = text.find('=');
  if (equals == 0 || equals == std::string::npos) {
    throw UsageError((where.empty() ? "" : where + ": ") + quotedText(text) + " is not " + form);
  }
  return {text.substr(0, equals), text.substr(equals + 1)};
}

}  // namespace spx::console
