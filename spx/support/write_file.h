#pragma once

#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "spx/support/atomic_file.h"
#include "spx/support/export.h"
#include "spx/support/file_name.h"

namespace qs_lib {
/// A text file to be written. Nothing is flushed before it is closed; fileClose() returns whether
/// everything was written. Writing to a closed file does nothing.
///
/// A child process that is forked while the file is open must not write to it; its destructor leaves
/// the file to the parent.
class SPX_EXPORT WriteFile : public FileName {
 public:
  WriteFile();
  WriteFile(const WriteFile&) = delete;
  WriteFile& operator=(const WriteFile&) = delete;
  /// Closes the file. When an exception ends its life a staged file is discarded, so that a partial
  /// file does not replace a complete one.
  ~WriteFile() override;

  /// Opens the file named by getFileName(), emptying it unless the append flag is set. A file
  /// that is still open is closed first.
  /// @return false when it cannot be opened
  [[nodiscard]] bool fileOpen();

  /// Closes the file; a staged one is moved into place now.
  /// @return false when anything written was lost; true for a file that is not open
  [[nodiscard]] bool fileClose();

  /// Closes the file and, when it is staged, leaves the target unchanged.
  void fileDiscard();

  /// Whether a file is open.
  bool isOpen() const { return stream_.is_open(); }

  /// Writes the text and a line feed.
  void writeLine(const std::string& line);

  /// Writes the text unchanged and faster than through stream(); both may be mixed freely.
  void write(std::string_view text) {
    if (isOpen()) {
      put(text);
    }
  }

  /// The output stream, in the classic locale; valid as long as this object.
  std::ofstream& stream() { return stream_; }

  /// @{
  /// When set, the next fileOpen() adds to the end of the file. Off at first.
  void setAppend(bool append) { append_ = append; }
  bool isAppend() const { return append_; }
  /// @}

  /// When set, a file opened without the append flag is written under a temporary name in the same
  /// directory and moved into place by a successful fileClose(): after a full disk or a killed
  /// process the old file is still there. Off at first; takes effect with the next fileOpen().
  void setStaged(bool staged) { staged_ = staged; }

 protected:
  /// What the destructor does; for derived classes that must close first.
  void closeAtEnd();

 private:
  void put(std::string_view text);
  void openStream(const std::string& path);
  bool closeStream();

  std::unique_ptr<char[]> buffer_;
  std::unique_ptr<AtomicFile> stage_;
  std::ofstream stream_;
  bool append_ = false;
  bool staged_ = false;
  int exceptions_at_opening_ = 0;
  int opened_by_ = 0;  ///< the process
};
}  // namespace qs_lib
