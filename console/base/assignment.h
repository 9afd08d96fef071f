#pragma once

#include <string>

namespace spx::console {

/// What is typed before and after the first "=".
struct assignment {
  std::string name;
  std::string value;
};

/// Splits a word of the command line. Throws UsageError when it has no "=", or nothing before it.
/// @param form   what was expected, such as "KEY=VALUE"
/// @param where  the option that took the word, such as "--map"; empty for a positional word
assignment splitAssignment(const std::string& text, const std::string& form, const std::string& where = {});

}  // namespace spx::console
