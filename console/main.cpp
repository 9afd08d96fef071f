#include <csignal>
#include <cstdlib>
#include <ios>

#include "console/base/process_memory.h"
#include "console/commands/command_line.h"

int main(int argument_count, char** arguments) {
  // A reader that has seen enough ends the program quietly, also when the parent ignores it.
  std::signal(SIGPIPE, SIG_DFL);
  // A file that grows beyond its limit is a failure with a reason, and not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  spx::console::keepFreedMemory();
  const int code = spx::console::runCommandLine(argument_count, arguments);
#ifdef NDEBUG
  // Everything is written. The memory of a large studbook goes back as a whole.
  std::quick_exit(code);
#else
  return code;
#endif
}
