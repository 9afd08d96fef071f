#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/views/predicates.h"

#include "console/command.h"
#include "console/failure.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

constexpr char TABLE[] = "filter_test.csv";

struct filter_options {
  std::string directory = ".";
  bool overwrite = false;
};

/// A directory inside another one that is the working directory while it lives, and is removed
/// with what was left in it: a table that is not finished never appears under its name.
class WorkDirectory {
 public:
  explicit WorkDirectory(const fs::path& parent) : former_(fs::current_path()) {
    std::string path = (parent / ".spx-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr) {
      throw Failure(parent.string() + ": cannot be written to: " + std::strerror(errno));
    }
    path_ = fs::absolute(path);
    fs::current_path(path_);
  }
  ~WorkDirectory() {
    std::error_code ignored;
    fs::current_path(former_, ignored);
    fs::remove_all(path_, ignored);
  }
  WorkDirectory(const WorkDirectory&) = delete;
  WorkDirectory& operator=(const WorkDirectory&) = delete;

 private:
  fs::path former_;
  fs::path path_;
};

ExitCode writeFilters(Session& session, const filter_options& options) {
  const fs::path target = fs::absolute(fs::path(options.directory) / TABLE);
  if (!options.overwrite && fs::exists(fs::symlink_status(target))) {
    throw Failure(target.string() + " is there already; --overwrite replaces it");
  }
  session.loadStudbook();
  const WorkDirectory work(options.directory);
  if (!TestFilters()) throw Failure(target.string() + ": cannot be written");
  fs::rename(TABLE, target);
  return ExitCode::DONE;
}

}  // namespace

void addFilterCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<filter_options>();
  commands.push_back({"filters", "Write the answer of every predicate for every animal",
                      [options](Session& session) { return writeFilters(session, *options); },
                      [options](CLI::App& app) {
                        app.add_option("--to", options->directory,
                                       "Directory of filter_test.csv (default: this one)");
                        app.add_flag("--overwrite", options->overwrite,
                                     "Replace a filter_test.csv that is there");
                      }});
}

}  // namespace spx::console
