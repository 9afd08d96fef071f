#include "console/studbook/source_files.h"

#include <filesystem>

#include "console/base/failure.h"

namespace spx::console {
namespace {

void takeFromDirectory(const std::filesystem::path& directory, const char* name, std::string& file) {
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
  takeFromDirectory(directory, "animals.csv", files.animals);
  if (files.animals.empty()) {
    throw Failure(directory.string() + ": there is no animals.csv in it");
  }
  takeFromDirectory(directory, "events.csv", files.events);
  takeFromDirectory(directory, "locations.csv", files.locations);
  takeFromDirectory(directory, "programs.csv", files.programs);
  return files;
}

}  // namespace spx::console
