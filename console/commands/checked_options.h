#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

/// Options whose values are checked while the command line is read, with messages that name what is allowed.
namespace spx::console {

/// An option that takes one of some words, which stand in the help and are completed.
/// @param value  the default; the choice must live until the command line is parsed
void addChoice(CLI::App& app, const char* name, std::string& value, const std::vector<std::string>& words,
               const std::string& help);

/// An option that takes a number within bounds.
template <class Number>
CLI::Option* addNumber(CLI::App& app, const char* name, Number& value, const char* type, double low, double high,
                       const std::string& help) {
  return app.add_option(name, value, help)->check(CLI::Range(low, high).description(""))->type_name(type);
}

}  // namespace spx::console
