#include "console/commands/undated_option.h"

#include <string>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"

namespace spx::console {

void addUndatedOption(CLI::App& app, UNDATED& choice) {
  const auto choose = [&choice](const std::string& text) {
    for (const UNDATED treatment : {UNDATED::LIVING, UNDATED::EXCLUDE}) {
      if (text != getText(treatment)) continue;
      choice = treatment;
      return;
    }
    throw UsageError("--undated must be one of: living, exclude");
  };
  app.add_option_function<std::string>("--undated", choose,
                                       "How animals without any date count in genetics: living, while no end is "
                                       "recorded; or exclude, not at all but as ancestors (default: living)")
      ->type_name("living|exclude");
}

}  // namespace spx::console
