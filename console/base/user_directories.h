#pragma once

namespace spx::console {

/// Creates "~/spx", "~/spx/projects" and "~/spx/studbooks" where they are missing: the library
/// writes its error file there and creates no directory itself. Says on standard error when it
/// cannot, and why; nothing but that file depends on it.
void makeUserDirectories();

}  // namespace spx::console
