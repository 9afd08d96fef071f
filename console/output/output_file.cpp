#include "console/output/output_file.h"

#include <filesystem>

#include <CLI/CLI.hpp>

#include "spx/support/file_name.h"

#include "console/base/failure.h"
#include "console/output/staged_files.h"

namespace spx::console {

namespace fs = std::filesystem;

void addOutputOptions(CLI::App& app, output_options& options) {
  app.add_option("--to", options.directory, "Directory to write to (default: the project's)")
      ->check([](const std::string& name) { return name.empty() ? "a directory has a name" : ""; })
      ->type_name("DIR");
  app.add_flag("--overwrite", options.overwrite, "Replace existing files in that directory");
}

std::string outputDirectory(Session& session, const output_options& options,
                            std::string (Session::*project_directory)() const) {
  if (options.directory.empty() && !session.hasProject()) {
    throw UsageError("there is no directory to write to; name one with --to DIR");
  }
  session.openProjectIfNamed();
  std::string directory =
      options.directory.empty() ? (session.*project_directory)() : qs_lib::homePath(options.directory);
  if (!fs::is_directory(directory)) {
    throw Failure(directory + ": no such directory");
  }
  removeStagedWhenEnded(directory);
  return directory;
}

void checkTarget(const output_options& options, const std::string& path) {
  refuseToOverwrite(path, options.overwrite || options.directory.empty());
}

}  // namespace spx::console
