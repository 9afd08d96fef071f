#pragma once

#include <string>

namespace spx::console {

/// What is being written lies beside its target until it is complete, under this beginning of a
/// name, which no other process uses.
std::string stagedPrefix();

/// When the program is ended by SIGINT, SIGTERM or SIGHUP, removes what it has staged in the
/// directory and then ends as the signal demands. A signal that was ignored stays ignored. The
/// first call starts a thread that waits for the signals.
void removeStagedWhenEnded(const std::string& directory);

}  // namespace spx::console
