#include "spx/support/file_name.h"

#include <cstdlib>

namespace qs_lib {
namespace {
void splitBaseName(const std::string& base, name_of_file& parts) {
  const std::size_t point = base.rfind('.');
  if (point == std::string::npos || point + 1 == base.size()) {
    parts.name = base;
    return;
  }
  parts.name = base.substr(0, point);
  parts.extension = base.substr(point + 1);
}
}  // namespace

name_of_file splitFileName(const std::string& path) {
  name_of_file parts;
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) {
    splitBaseName(path, parts);
    return parts;
  }
  parts.directory = slash == 0 ? "/" : path.substr(0, slash);
  splitBaseName(path.substr(slash + 1), parts);
  return parts;
}

std::string createFileName(const std::string& directory, const std::string& name, const std::string& extension) {
  std::string path = directory;
  if (!directory.empty() && directory != "/") {
    path += '/';
  }
  path += name;
  if (!extension.empty()) {
    path += '.';
    path += extension;
  }
  return path;
}

void checkHomePath(std::string& path) {
  if (path.empty() || path.front() != '~') {
    return;
  }
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') {
    path.replace(0, 1, home);
  }
}

std::string homePath(std::string path) {
  checkHomePath(path);
  return path;
}

bool isPath(const std::string& path) {
  return !path.empty() && path.find('\0') == std::string::npos;
}

bool isPlainName(const std::string& name) {
  return isPath(name) && name != "." && name != ".." && name.find('/') == std::string::npos;
}

FileName::~FileName() = default;

void FileName::setFileName(const std::string& path) {
  file_ = splitFileName(path);
}

std::string FileName::getFileName() const {
  return homePath(createFileName(file_.directory, file_.name, file_.extension));
}
}  // namespace qs_lib
