#pragma once

#include <cstddef>
#include <fstream>
#include <string>

#include "spx/support/export.h"
#include "spx/support/file_name.h"

namespace qs_lib {
/// A text file to be read line by line.
class SPX_EXPORT ReadFile : public FileName {
 public:
  ReadFile();
  ReadFile(const ReadFile&) = delete;
  ReadFile& operator=(const ReadFile&) = delete;
  ~ReadFile() override;  ///< closes the file

  /// Opens the file named by getFileName(); a file that is still open is closed first.
  /// @return false when it is missing, may not be read or is a directory
  bool fileOpen();

  /// Closes the file. @return false when reading failed before the end; true for a closed file
  bool fileClose();

  /// Whether a file is open.
  bool isOpen() const { return stream_.is_open(); }

  /// Reads the next line without its line feed; a CR before it is kept.
  /// @return false, with the text emptied, at the end of the file
  bool readLine(std::string& line);

  /// The same, but keeps the first limit characters only and skips the rest of the line.
  bool readLine(std::string& line, std::size_t limit);

 private:
  std::ifstream stream_;
};
}  // namespace qs_lib
