#include "console/output/filter_table.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "spx/support/console.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/output/staged_files.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

constexpr char TABLE[] = "filter_test.csv";  // as the library names it, in the working directory

/// A directory inside another one that is the working directory while it lives, and is removed
/// with what was left in it: a table that is not finished never appears under its name.
class WorkDirectory {
 public:
  explicit WorkDirectory(const fs::path& parent) : former_(fs::current_path()) {
    std::string path = (parent / (stagedPrefix() + "XXXXXX")).string();
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

/// The name that the library shows is not the one that the user gets.
class NoDisplay {
 public:
  NoDisplay() {
    qs_lib::setDisplayHandler([](const std::string&) {});
  }
  ~NoDisplay() { qs_lib::setDisplayHandler({}); }
  NoDisplay(const NoDisplay&) = delete;
  NoDisplay& operator=(const NoDisplay&) = delete;
};

}  // namespace

void writeFilterTable(const std::string& path) {
  const fs::path target = fs::absolute(path);
  const WorkDirectory work(target.parent_path());
  const NoDisplay quiet;
  if (!TestFilters()) {
    throw Failure(path + ": could not be written");
  }
  fs::rename(TABLE, target);
}

}  // namespace spx::console
