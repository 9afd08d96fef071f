#include <csignal>
#include <ios>

#include "console/command_line.h"
#include "console/process_memory.h"

int main(int argument_count, char** arguments) {
  // A reader that has seen enough ends the program quietly, also when the parent ignores it.
  std::signal(SIGPIPE, SIG_DFL);
  std::ios::sync_with_stdio(false);
  spx::console::keepFreedMemory();
  return spx::console::runCommandLine(argument_count, arguments);
}
