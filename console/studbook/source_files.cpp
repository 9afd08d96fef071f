#include "console/studbook/source_files.h"

#include <filesystem>

#include "console/base/failure.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

void takeFromDirectory(const std::filesystem::path& directory, const std::string& name, std::string& file) {
  const std::filesystem::path path = directory / name;
  if (file.empty() && std::filesystem::exists(path)) {
    file = path.string();
  }
}

}  // namespace

studbook_files resolveFiles(studbook_files files) {
  const std::filesystem::path directory = files.animals;
  if (!std::filesystem::is_directory(directory)) {
    return files;
  }
  files.animals.clear();
  for (const stored_table& table : storedTableList()) {
    takeFromDirectory(directory, std::string(table.name) + ".csv", files.*table.file);
  }
  if (files.animals.empty()) {
    throw Failure(directory.string() + ": contains no animals.csv");
  }
  return files;
}

}  // namespace spx::console
