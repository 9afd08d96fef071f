#pragma once

#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// Replaces a file as a whole: what is written goes to a temporary file beside it, and commit()
/// puts that in its place. Whoever reads the target finds the old content or the new one, also
/// after a crash. Without commit() the target stays as it was.
///
///     AtomicFile file(path);
///     if (file.create() && writeEverything(file.writePath())) return file.commit();
///
/// A temporary file is locked while it is written. One that is not, because its process was killed,
/// is removed by the next create() in that directory.
///
/// A target that is no regular file (a device, a pipe) cannot be replaced: it is written itself.
/// A symbolic link stays; the file that it names is replaced.
class SPX_EXPORT AtomicFile {
 public:
  /// Takes the path of the file to replace; nothing is touched before create().
  explicit AtomicFile(std::string target);
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;
  ~AtomicFile();  ///< discards what was not committed

  /// Creates the empty temporary file, with the permission bits of the target if there is one.
  /// @return false when the directory is missing or cannot be written, or the target
  ///         is a directory or protected
  bool create();

  /// The file to write to; empty before create().
  const std::string& writePath() const { return write_path_; }

  /// Brings the content to the disk and renames the file; everything must be written and closed.
  /// @return false when that fails; the temporary file is then removed
  bool commit();

  /// Removes the temporary file.
  void discard();

 private:
  bool createBeside(unsigned mode, bool keep_mode);
  bool lock(int file);
  void unlock();

  std::string target_;
  std::string write_path_;
  bool temporary_ = false;
  int lock_ = -1;  ///< the temporary file, open
};
}  // namespace qs_lib
