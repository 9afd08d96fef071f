#pragma once

#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// A log to which an analysis can add lines. It does nothing until it is given a file.
class SPX_EXPORT LogFile {
 public:
  /// Names the file; "~" is replaced. The empty path switches the log off again.
  void setFileName(const std::string& path);

  /// Adds one line: local date and time, a blank and the text, with its line breaks replaced by
  /// blanks. The file is opened and closed for each line, so that the line is there even if the
  /// process dies.
  /// @return false when the line could not be written, true also without a file
  [[nodiscard]] bool write(const std::string& text);

 private:
  std::string path_;
};
}  // namespace qs_lib
