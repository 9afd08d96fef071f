#pragma once

#include <vector>

#include "console/base/exit_code.h"
#include "console/check/finding.h"
#include "console/commands/edit_run.h"

namespace spx::console {

/// Cures the findings that have one sensible cure, as one change of the studbook file: each after
/// the keeper, who is asked on standard error, has answered yes on standard input.
/// @param sure  the rules whose findings are cured without asking
ExitCode fixFindings(Session& session, const edit_options& options, const std::vector<finding>& findings,
                     const std::vector<CHECK>& sure);

}  // namespace spx::console
