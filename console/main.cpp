#include <csignal>
#include <ios>

#include "console/commands/command_line.h"

int main(int argument_count, char** arguments) {
  // A reader that has seen enough ends the program quietly, also when the parent ignores it.
  std::signal(SIGPIPE, SIG_DFL);
  // A file that grows beyond its limit is a failure with a reason, and not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  return spx::console::runCommandLine(argument_count, arguments);
}
