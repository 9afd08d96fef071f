#include "spx/support/directory.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "spx/support/file_name.h"

namespace qs_lib {
namespace {
namespace fs = std::filesystem;

/// The name to list; empty for an entry that does not belong to the list.
std::string listedName(const fs::directory_entry& entry, const std::string& extension, bool base_names) {
  const std::string file = entry.path().filename().string();
  const name_of_file parts = splitFileName(file);
  std::error_code error;
  if (parts.name.empty() || parts.extension != extension || !entry.is_regular_file(error)) {
    return {};
  }
  return base_names ? parts.name : file;
}
}  // namespace

bool createDir(const std::string& path) {
  const std::string directory = homePath(path);
  if (!isPath(directory)) {
    return false;
  }
  std::error_code error;
  fs::create_directory(directory, error);
  return fs::is_directory(directory, error);
}

bool listDir(const std::string& directory, const std::string& extension, bool base_names,
             std::vector<std::string>& names) {
  const std::string path = directory.empty() ? "." : homePath(directory);
  if (!isPath(path)) {
    return false;
  }
  std::error_code error;
  std::vector<std::string> found;
  for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error)) {
    std::string name = listedName(*entry, extension, base_names);
    if (!name.empty()) {
      found.push_back(std::move(name));
    }
  }
  if (error) {
    return false;
  }
  std::sort(found.begin(), found.end());
  std::move(found.begin(), found.end(), std::back_inserter(names));
  return true;
}
}  // namespace qs_lib
