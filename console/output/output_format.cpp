#include "console/output/output_format.h"

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"

namespace spx::console {
namespace {

OUTPUT_FORMAT parseFormat(const std::string& text) {
  const std::vector<std::string> names = {"text", "csv", "json"};  // in the order of the values
  for (std::size_t which = 0; which < names.size(); ++which) {
    if (names[which] == text) {
      return static_cast<OUTPUT_FORMAT>(which);
    }
  }
  throw UsageError("--format: " + quotedText(text) + " must be one of: text, csv, json" + suggestion(text, names));
}

}  // namespace

void addFormatOption(CLI::App& app, OUTPUT_FORMAT& format) {
  app.add_option_function<std::string>(
         "--format", [&format](const std::string& text) { format = parseFormat(text); },
         "Show the result as a listing, or for scripts (default: text)")
      ->type_name("text|csv|json");
}

}  // namespace spx::console
