#pragma once

namespace spx::console {

/// Runs the program: reads the command line and runs the command. Catches all exceptions and
/// reports them on standard error.
/// @return the exit code; FAILED when standard output lost anything
int runCommandLine(int argument_count, const char* const* arguments);

}  // namespace spx::console
