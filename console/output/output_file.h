#pragma once

#include <string>

#include "console/output/result_output.h"
#include "console/project/session.h"

namespace CLI {
class App;
}

namespace spx::console {

/// The options that say where a command writes its files.
struct output_options {
  std::string directory;  ///< as typed; empty: the project's
  bool overwrite = false;
};

/// Adds `--to DIR` and `--overwrite`.
void addOutputOptions(CLI::App& app, output_options& options);

/// The directory to write to: the one typed, or the project's, where the program may always replace
/// files. Throws UsageError when there is neither, and Failure when it is not a directory.
/// @param project_directory  the session's function for it, called only when nothing was typed
std::string outputDirectory(Session& session, const output_options& options,
                            std::string (Session::*project_directory)() const);

/// Throws Failure for a file that may not be replaced: those in a directory that was typed need
/// `--overwrite`.
void checkTarget(const output_options& options, const std::string& path);

}  // namespace spx::console
