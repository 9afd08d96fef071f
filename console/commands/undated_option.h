#pragma once

#include "console/results/genetic_basis.h"

namespace CLI {
class App;
}

namespace spx::console {

/// Adds `--undated living|exclude`. The choice must live until the command line is parsed.
void addUndatedOption(CLI::App& app, UNDATED& choice);

}  // namespace spx::console
