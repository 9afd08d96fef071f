#pragma once

#include <string>

namespace spx::console {

/// The prefix of the names of staged files, which lie in the directory of their target until they
/// are complete. It is unique to this process.
std::string stagedPrefix();

/// When SIGINT, SIGTERM or SIGHUP ends the program, removes the files that it has staged in the
/// directory and then lets the signal take effect. A signal that was ignored stays ignored. The
/// first call starts a thread that waits for the signals.
void removeStagedWhenEnded(const std::string& directory);

}  // namespace spx::console
