#include "spx/support/configuration.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "spx/support/file_name.h"
#include "spx/support/key_file.h"
#include "spx/support/read_file.h"
#include "spx/support/write_file.h"

namespace qs_lib {
namespace {
template <typename FILE_TYPE>
void nameFile(FILE_TYPE& file, const Configuration& configuration) {
  file.setDirectory(configuration.getDirectory());
  file.setName(configuration.getName());
  file.setExtension(configuration.getExtension());
}

bool isRegularFile(const std::string& path) {
  std::error_code error;
  return isPath(path) && std::filesystem::is_regular_file(path, error);
}

bool parseFile(ReadFile& file, KeyFileParser& parser) {
  std::string line;
  while (file.readLine(line)) {
    if (!parser.takeLine(line)) {
      return false;
    }
  }
  return parser.isComplete();
}
}  // namespace

Configuration::Configuration() = default;

Configuration::~Configuration() = default;

bool Configuration::load() {
  ReadFile file;
  nameFile(file, *this);
  KeyFileParser parser;
  // A device or a pipe may never end.
  if (!isRegularFile(file.getFileName()) || !file.fileOpen() || !parseFile(file, parser) || !file.fileClose()) {
    return false;
  }
  if (match_section_ && !section_.empty() && parser.section() != section_) {
    return false;
  }
  entries_.swap(parser.entries());
  return true;
}

bool Configuration::save() {
  WriteFile file;
  nameFile(file, *this);
  file.setStaged(true);
  if (!file.fileOpen()) {
    return false;
  }
  file.write(keyFileText(section_, entries_));
  return file.fileClose();
}

void Configuration::set(const std::string& key, const std::string& type, const std::string& value,
                        const std::string& description) {
  entries_.insert_or_assign(key, ConfigElement{value, type, description});
}

ConfigElement Configuration::get(const std::string& key) const {
  const auto entry = entries_.find(key);
  return entry == entries_.end() ? ConfigElement{} : entry->second;
}

std::string Configuration::getFileName() const {
  return homePath(createFileName(directory_, name_, extension_));
}
}  // namespace qs_lib
