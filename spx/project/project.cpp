#include "spx/project/project.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>

#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/support/console.h"
#include "spx/support/directory.h"
#include "spx/support/file_name.h"
#include "spx/support/julian_date.h"
#include "spx/support/text.h"

namespace spx {
namespace {

std::string homeDirectory() {
  const char* home = std::getenv("HOME");
  return home == nullptr ? std::string() : std::string(home);
}

// The working directory changes while the tree is made, so a relative path is resolved before. Empty
// when the working directory does not exist.
std::string absolutePath(const std::string& path) {
  std::error_code failed;
  const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
  return failed ? std::string() : absolute.string();
}

bool enter(const std::string& directory) {
  return chdir(directory.c_str()) == 0;
}

// The time of creation always includes the time of day.
std::string todayWithTime() {
  const bool use_time = qs_lib::isUseTime();
  qs_lib::setUseTime(true);
  std::string today = qs_lib::getTodayAsISO();
  qs_lib::setUseTime(use_time);
  return today;
}

}  // namespace

Project::Project() {
  setSection("PROJECT");
  setDirectory(homeDirectory() + "/spx/projects");
  setExtension("project");
  setSaveOnClose(false);
  setMatchSection(true);
}

Project::~Project() {
  if (!project_name_.empty() && isSaveOnClose()) {
    static_cast<void>(save());
  }
}

void Project::setName(const std::string& name) {
  if (name.empty()) {
    return;
  }
  project_name_ = name;
  set("NAME", "TEXT", name, "Name of project");
  Configuration::setName(name);
}

bool Project::create(const std::string& name, const std::string& directory) {
  const std::string previous = getDirectory();
  const std::string trimmed = qs_lib::allTrim(name);
  const std::string parent = absolutePath(qs_lib::homePath(directory));
  // Without the parent directory the tree would be made in the working directory.
  if (trimmed.empty() || !qs_lib::isPlainName(trimmed) || !enter(parent)) {
    return false;
  }
  setDirectory(parent + "/" + trimmed);
  if (access(trimmed.c_str(), F_OK) == 0) {
    spxError(error_text::PROJECT_EXISTS);
    return false;
  }
  makeTree(trimmed, parent);
  clearEntries();
  setName(trimmed);
  setDefaults(trimmed, parent);
  qs_lib::message("Created new project " + trimmed);
  // Not reported, kept on purpose: the host finds out whether the file is there.
  static_cast<void>(save());
  static_cast<void>(enter(previous));
  return true;
}

void Project::makeTree(const std::string& name, const std::string& parent) {
  qs_lib::message(getDirectory());
  // A name that begins with "~" is not a home directory.
  const std::string tree = "./" + name;
  qs_lib::createDir(tree);
  if (enter(tree)) {
    for (const char* directory : {"views", "reports", "export", "graphics"}) {
      qs_lib::createDir(directory);
    }
  }
  static_cast<void>(enter(parent));
}

void Project::setDefaults(const std::string& name, const std::string& parent) {
  const std::string tree = parent + "/" + name;
  set("CREATED", "DATE", todayWithTime(), "Date project was created (iso8601 format)");
  set("DB_SYSTEM", "TEXT", "SQLITE3", "Database system");
  set("EXPORT_PATH", "TEXT", tree + "/export", "Export path");
  set("REPORT_FORMAT", "TEXT", "XML", "Report format");
  set("REPORT_DEVICE", "TEXT", "REPORT_FILE", "Report device");
  set("REPORT_PATH", "TEXT", tree + "/reports", "Report path");
  set("STUDBOOK_FORMAT", "TEXT", "SPARKS", "Studbook format");
  set("STUDBOOK_PATH", "TEXT", "~/spx/studbooks", "Studbook path");
  set("VIEW_PATH", "TEXT", tree + "/views", "View path");
  set("LAST_FILTER_ID", "INTEGER", "0", "Last filter ID");
  set("LOAD_LOCATION", "BOOLEAN", "TRUE", "Load locations");
  set("AGE_BASED", "BOOLEAN", "TRUE", "Age or Stage based model");
  // The type word says DATE, the value is a truth value. Kept on purpose: it is part of the format.
  set("TIMESTAMP", "DATE", "FALSE", "Use timestamp in dates");
}

bool Project::remove() {
  qs_lib::message("Removed project " + project_name_);
  return true;
}

}  // namespace spx
