#pragma once

namespace spx::console {

/// Creates "~/spx", "~/spx/projects" and "~/spx/studbooks" where they are missing: the library
/// writes its error file there and creates no directory itself. On failure says why on standard
/// error and goes on, since only that file depends on the directories.
void makeUserDirectories();

}  // namespace spx::console
