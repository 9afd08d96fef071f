#include "console/base/user_directories.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "spx/support/directory.h"

namespace spx::console {

void makeUserDirectories() {
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') {
    std::cerr << "spx: HOME is not set, so ~/spx/projects cannot be used\n";
    return;
  }
  for (const char* directory : {"~/spx", "~/spx/projects", "~/spx/studbooks"}) {
    errno = 0;
    if (qs_lib::createDir(directory)) {
      continue;
    }
    std::cerr << "spx: cannot create " << directory << " in " << home << ": " << std::strerror(errno) << "\n";
    return;
  }
}

}  // namespace spx::console
