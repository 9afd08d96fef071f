#include <csignal>
#include <ios>

#include "console/commands/command_line.h"

int main(int argument_count, char** arguments) {
  // When the reader of a pipe stops reading, the program ends quietly, even if the parent process ignores SIGPIPE.
  std::signal(SIGPIPE, SIG_DFL);
  // Exceeding the limit of file sizes is reported as a failure and does not kill the program.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  return spx::console::runCommandLine(argument_count, arguments);
}
