#pragma once

namespace spx::console {

/// Runs the program: reads the command line, loads the studbook and obeys. Catches whatever is
/// thrown and says on standard error what and where.
/// @return the exit code; also a failure when standard output lost anything
int runCommandLine(int argument_count, const char* const* arguments);

}  // namespace spx::console
