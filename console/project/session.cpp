#include "console/project/session.h"

#include <filesystem>

#include "spx/project/biology.h"
#include "spx/project/project.h"
#include "spx/support/file_name.h"
#include "spx/support/julian_date.h"
#include "spx/support/text.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/user_directories.h"
#include "console/project/life_history.h"
#include "console/studbook/column_mapping.h"
#include "console/studbook/load_studbook.h"
#include "console/studbook/studbook_file.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

std::string projectEntry(const char* key) {
  const std::string entry = ActiveProject.get(key).value;
  if (entry.empty()) {
    throw Failure(ActiveProject.getFileName() + ": has no " + key);
  }
  return qs_lib::homePath(entry);
}

void openLifeHistory(const std::string& directory) {
  LifeHistory.setDirectory(directory);
  if (!fs::exists(LifeHistory.getFileName())) {
    return;
  }
  if (!LifeHistory.load()) {
    throw Failure(LifeHistory.getFileName() + ": not a life-history file, or unreadable");
  }
  checkLifeHistory(LifeHistory);
}

}  // namespace

std::string projectsDirectory() {
  return qs_lib::homePath("~/spx/projects");
}

void nameProject(const std::string& name) {
  const std::string directory = projectsDirectory() + "/" + name;
  if (!qs_lib::isPlainName(name) || !fs::is_directory(directory)) {
    throw Failure("there is no project \"" + name + "\" in " + projectsDirectory());
  }
  ActiveProject.setDirectory(directory);
  ActiveProject.setName(name);
}

void openProjectFile(const std::string& name) {
  nameProject(name);
  if (!ActiveProject.load()) {
    throw Failure(ActiveProject.getFileName() + ": not a project file, or unreadable");
  }
}

void Session::openProject() {
  if (project_open_) {
    return;
  }
  if (!hasProject()) {
    throw UsageError("no project is given; name one with --project NAME");
  }
  makeUserDirectories();
  openProjectFile(options_.project);
  View.path = viewDirectory();
  qs_lib::setUseTime(qs_lib::stringToBool(ActiveProject.get("TIMESTAMP").value));
  openLifeHistory(projectDirectory());
  project_open_ = true;
}

void Session::openProjectIfNamed() {
  if (hasProject()) {
    openProject();
  }
}

void Session::loadStudbook() {
  if (studbook_loaded_) {
    return;
  }
  openProjectIfNamed();
  const studbook_files files = chosenFiles();
  if (files.animals.empty()) {
    failWithoutStudbook();
  }
  if (!newMapping().empty()) {
    throw UsageError("--mapping: " + options_.mapping + " does not exist; spx import writes it");
  }
  notes_ = console::loadStudbook(files);
  studbook_loaded_ = true;
}

void Session::loadStudbookIfNamed() {
  openProjectIfNamed();
  if (!chosenFiles().animals.empty()) {
    loadStudbook();
  }
}

void Session::failWithoutStudbook() const {
  throw UsageError(hasProject() ? "the project has no studbook in " + projectEntry("STUDBOOK_PATH") +
                                      "; name one with --studbook FILE"
                                : "no studbook is given; name one with --studbook FILE");
}

bool Session::hasStudbook() {
  openProjectIfNamed();
  return hasProject() || !options_.files.animals.empty();
}

std::string Session::importTarget() {
  openProjectIfNamed();
  if (!options_.files.animals.empty()) {
    return options_.files.animals;
  }
  if (!hasProject()) {
    failWithoutStudbook();
  }
  return projectEntry("STUDBOOK_PATH") + "/" + options_.project + ".studbook";
}

std::string Session::studbook() {
  openProjectIfNamed();
  std::string file = chosenFiles().animals;
  if (file.empty()) {
    failWithoutStudbook();
  }
  return file;
}

std::string Session::studbookName() {
  if (hasProject()) {
    return options_.project;
  }
  const fs::path file = fs::absolute(studbook()).lexically_normal();
  const fs::path& named = file.stem() == "animals" || !file.has_filename() ? file.parent_path() : file;
  return named.stem().string();
}

std::string Session::writableStudbook() {
  openProjectIfNamed();
  std::string file = chosenFiles().animals;
  if (file.empty()) {
    failWithoutStudbook();
  }
  if (fs::exists(file) && !isStudbookFile(file)) {
    throw Failure(file + ": not a studbook file; spx import makes one from tables");
  }
  return file;
}

std::string Session::newMapping() const {
  return fs::exists(options_.mapping) ? std::string() : options_.mapping;
}

studbook_files Session::filesBeside(const std::string& animals) const {
  studbook_files files = options_.files;
  files.animals = animals;
  for (const std::string& text : options_.titles) {
    files.titles.push_back(parseTitleChoice(text));
  }
  if (!options_.dates.empty()) {
    files.reading.dates = options_.dates == "day-first" ? DATE_ORDER::DAY_FIRST : DATE_ORDER::MONTH_FIRST;
  }
  if (!options_.footer.empty()) {
    files.reading.footer = options_.footer == "skip" ? FOOTER::SKIP : FOOTER::KEEP;
  }
  if (fs::exists(options_.mapping)) {
    readMapping(options_.mapping, files);
  }
  return files;
}

studbook_files Session::chosenFiles() const {
  const std::string& typed = options_.files.animals;
  return filesBeside(typed.empty() && hasProject() ? projectStudbook() : typed);
}

// The file or directory with the project's name in which the project keeps its studbook.
std::string Session::projectStudbook() const {
  const std::string stem = projectEntry("STUDBOOK_PATH") + "/" + options_.project;
  for (const char* ending : {".studbook", ".csv", ""}) {
    if (fs::exists(stem + ending)) {
      return stem + ending;
    }
  }
  return std::string();
}

std::string Session::projectDirectory() const {
  return ActiveProject.getDirectory();
}

std::string Session::viewDirectory() const {
  return projectEntry("VIEW_PATH");
}

std::string Session::reportDirectory() const {
  return projectEntry("REPORT_PATH");
}

std::string Session::exportDirectory() const {
  return projectEntry("EXPORT_PATH");
}

}  // namespace spx::console
