#include "spx/support/read_file.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace qs_lib {
ReadFile::ReadFile() = default;

ReadFile::~ReadFile() {
  fileClose();
}

bool ReadFile::fileOpen() {
  fileClose();
  const std::string path = getFileName();
  std::error_code error;
  // A stream opens a directory and fails only at the first line.
  if (!isPath(path) || std::filesystem::is_directory(path, error)) {
    return false;
  }
  stream_.clear();
  stream_.open(path);
  return isOpen();
}

bool ReadFile::fileClose() {
  if (!isOpen()) {
    return true;
  }
  const bool readable = !stream_.bad();
  stream_.close();
  stream_.clear();
  return readable;
}

bool ReadFile::readLine(std::string& line) {
  line.clear();
  return static_cast<bool>(std::getline(stream_, line));
}

bool ReadFile::readLine(std::string& line, std::size_t limit) {
  line.clear();
  char next = '\0';
  if (!stream_.get(next)) {
    return false;
  }
  do {
    if (next == '\n') {
      break;
    }
    if (line.size() < limit) {
      line += next;
    }
  } while (stream_.get(next));
  return true;
}
}  // namespace qs_lib
