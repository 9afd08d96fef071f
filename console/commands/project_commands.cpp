#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "spx/project/project.h"
#include "spx/support/file_name.h"
#include "spx/support/julian_date.h"
#include "spx/support/text.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/base/user_directories.h"
#include "console/commands/command.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

fs::path keyFile(const fs::path& directory) {
  return directory / (directory.filename().string() + ".project");
}

/// Restores the working directory, which the library changes while it creates a project.
class SameDirectory {
 public:
  SameDirectory() : former_(fs::current_path()) {}
  ~SameDirectory() {
    std::error_code ignored;
    fs::current_path(former_, ignored);
  }
  SameDirectory(const SameDirectory&) = delete;
  SameDirectory& operator=(const SameDirectory&) = delete;

 private:
  fs::path former_;
};

/// Throws Failure for whatever is missing: the library returns true even when it could not create everything.
void checkProject(const fs::path& directory) {
  for (const char* part : {"views", "reports", "export", "graphics"}) {
    if (!fs::is_directory(directory / part)) {
      throw Failure((directory / part).string() + ": could not be created");
    }
  }
  if (!fs::is_regular_file(keyFile(directory))) {
    throw Failure(keyFile(directory).string() + ": could not be written");
  }
}

ExitCode create(const std::string& typed_name) {
  makeUserDirectories();
  const SameDirectory stay;
  const std::string name = qs_lib::allTrim(typed_name);
  if (!qs_lib::isPlainName(name) || name.starts_with("~")) {
    throw UsageError(quotedText(typed_name) + " is not a valid project name");
  }
  // Leaves room for the longer names of its files and of the directory in which a removed project is kept.
  constexpr std::size_t LONGEST_NAME = 200;
  if (name.size() > LONGEST_NAME) {
    throw UsageError(quotedText(name) + " is too long for the name of a project (at most " +
                     std::to_string(LONGEST_NAME) + " bytes)");
  }
  if (!fs::is_directory(projectsDirectory())) {
    throw Failure(projectsDirectory() + ": no such directory");
  }
  if (!ActiveProject.create(name, projectsDirectory())) {
    return ExitCode::FAILED;
  }
  checkProject(fs::path(projectsDirectory()) / name);
  return ExitCode::DONE;
}

ExitCode list() {
  makeUserDirectories();
  std::vector<std::string> names;
  std::error_code failed;
  for (const fs::directory_entry& entry : fs::directory_iterator(projectsDirectory(), failed)) {
    std::error_code unreadable;  // another user's directory, a link to itself
    if (fs::exists(keyFile(entry.path()), unreadable)) {
      names.push_back(entry.path().filename().string());
    }
  }
  if (failed) {
    throw Failure(projectsDirectory() + ": cannot be read: " + failed.message());
  }
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    std::cout << name << "\n";
  }
  if (names.empty()) {
    std::cerr << "spx: there are no projects; spx project create NAME creates one\n";
  }
  return ExitCode::DONE;
}

ExitCode show(const std::string& name) {
  openProjectFile(name);
  for (const auto& [key, entry] : ActiveProject.entries()) {
    std::cout << key << std::string(key.size() < 18 ? 18 - key.size() : 1, ' ') << entry.value << "\n";
  }
  return ExitCode::DONE;
}

/// Moves a project to ~/spx/removed instead of deleting it, since it may hold the only copy of a view or a report.
fs::path setAside(const fs::path& directory) {
  const fs::path store = qs_lib::homePath("~/spx/removed");
  fs::create_directories(store);
  const std::string stamp = qs_lib::julianToYYYYMMDD(qs_lib::dateToJulian(qs_lib::getTodayAsISO()));
  const std::string name = directory.filename().string() + "-" + stamp;
  fs::path target = store / name;
  for (int copy = 2; fs::exists(fs::symlink_status(target)); ++copy) {
    target = store / (name + "-" + std::to_string(copy));
  }
  fs::rename(directory, target);
  return target;
}

/// Removes a project, also one whose key file is missing or damaged.
ExitCode remove(const std::string& name) {
  nameProject(name);
  const fs::path kept = setAside(ActiveProject.getDirectory());
  ActiveProject.remove();
  std::cout.flush();
  std::cerr << "spx: its files are kept in " << kept.string() << "\n";
  const std::string studbook = qs_lib::homePath("~/spx/studbooks/" + name + ".studbook");
  if (fs::exists(studbook)) {
    std::cerr << "spx: the studbook stays where it is, and a new project of that name would use it: " << studbook
              << "\n";
  }
  return ExitCode::DONE;
}

}  // namespace

void addProjectCommands(std::vector<command>& commands) {
  const auto name = std::make_shared<std::string>();
  const auto add_name = [name](CLI::App& app) { app.add_option("NAME", *name, "Name of the project")->required(); };
  CommandGroup group("project", "Create, list, show and remove projects");
  group.add(
      {"create", "Make a new project with its directories", [name](Session&) { return create(*name); }, add_name});
  group.add({"list", "List the projects", [](Session&) { return list(); }});
  group.add({"show", "Show the settings of a project", [name](Session&) { return show(*name); }, add_name});
  group.add({"remove", "Remove a project from the list; its files are kept", [name](Session&) { return remove(*name); },
             add_name});
  commands.push_back(group.asCommand());
}

}  // namespace spx::console
