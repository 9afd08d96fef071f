#include "spx/support/log_file.h"

#include <array>
#include <cstdio>

#include "spx/support/julian_date.h"
#include "spx/support/text.h"
#include "spx/support/write_file.h"

namespace qs_lib {
namespace {
std::string timeStamp() {
  date_time_record now;
  getToday(now);
  std::array<char, 40> text;
  std::snprintf(text.data(), text.size(), "%04u-%02u-%02u %02u:%02u:%02u ", unsigned{now.year}, unsigned{now.month},
                unsigned{now.day}, unsigned{now.hour}, unsigned{now.minute}, unsigned{now.second});
  return text.data();
}
}  // namespace

void LogFile::setFileName(const std::string& path) {
  path_ = path;
}

bool LogFile::write(const std::string& text) {
  if (path_.empty()) {
    return true;
  }
  WriteFile file;
  file.setFileName(path_);
  file.setAppend(true);
  if (!file.fileOpen()) {
    return false;
  }
  file.writeLine(timeStamp() + replaceChar(replaceChar(text, '\n', ' '), '\r', ' '));
  return file.fileClose();
}
}  // namespace qs_lib
