#pragma once

#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// Replaces a file as a whole: the new content goes to a temporary file in the same directory, and
/// commit() renames that to the target. A reader of the target finds the old content or the new
/// one, also after a crash. Without commit() the target is unchanged.
///
///     AtomicFile file(path);
///     if (file.create() && writeEverything(file.writePath())) return file.commit();
///
/// A temporary file is locked while it is written. One that is no longer locked, because its
/// process was killed, is removed by the next create() in that directory.
///
/// A target that is not a regular file (a device, a pipe) is written directly. A symbolic link
/// stays; the file that it names is replaced. A forked child can neither commit nor discard the file
/// of its parent.
class SPX_EXPORT AtomicFile {
 public:
  /// Takes the path of the file to replace; nothing is touched before create().
  explicit AtomicFile(std::string target);
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;
  ~AtomicFile();  ///< discards what was not committed

  /// Creates the empty temporary file, with the permission bits of the target if there is one.
  /// @return false when the directory is missing or cannot be written, or the target
  ///         is a directory or write-protected
  [[nodiscard]] bool create();

  /// The file to write to; empty before create().
  const std::string& writePath() const { return write_path_; }

  /// Writes the content through to the disk and renames the file.
  /// Requires: everything is written, and the file is closed.
  /// @return false when that fails; the temporary file is then removed
  [[nodiscard]] bool commit();

  /// Removes the temporary file.
  void discard();

 private:
  bool createBeside(unsigned mode, bool keep_mode);
  bool lock(int file);
  void unlock();

  std::string target_;
  std::string write_path_;
  bool temporary_ = false;
  int created_by_ = 0;  ///< the process
  int lock_ = -1;       ///< the temporary file, open
};
}  // namespace qs_lib
