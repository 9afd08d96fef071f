#pragma once

#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// The parts of a file name.
struct name_of_file {
  std::string directory;  ///< without a final "/"
  std::string name;       ///< the base name
  std::string extension;  ///< without its dot
};

/// Splits a path: the directory ends before the last "/", the extension follows the last "." of
/// the rest. A dot at the very end belongs to the name; "/x" lies in the directory "/".
SPX_EXPORT name_of_file splitFileName(const std::string& path);

/// Joins directory, "/", name, "." and extension, leaving out "/" for an empty directory and "."
/// for an empty extension. splitFileName() undoes it, unless the name contains a dot and the extension is empty.
SPX_EXPORT std::string createFileName(const std::string& directory, const std::string& name,
                                      const std::string& extension);

/// Replaces a "~" at the start of the path by the environment's HOME. The path is unchanged when
/// HOME is unset or empty.
SPX_EXPORT void checkHomePath(std::string& path);

/// The path with its "~" replaced; see checkHomePath().
SPX_EXPORT std::string homePath(std::string path);

/// Whether the system accepts the text as a path: not empty, and without NUL, at which the system would cut it.
SPX_EXPORT bool isPath(const std::string& path);

/// Whether a file of this name stays in its directory: not empty, not "." or "..", and without "/"
/// and NUL.
SPX_EXPORT bool isPlainName(const std::string& name);

/// Holds the name of a file. A "~" in front of the directory is kept and replaced on each use.
class SPX_EXPORT FileName {
 public:
  FileName() = default;
  /// @{
  /// Copies and moves the three parts.
  FileName(const FileName&) = default;
  FileName(FileName&&) = default;
  FileName& operator=(const FileName&) = default;
  FileName& operator=(FileName&&) = default;
  /// @}
  virtual ~FileName();

  /// Replaces all three parts by those of the path.
  void setFileName(const std::string& path);

  /// The whole path, with "~" replaced.
  std::string getFileName() const;

  /// @{
  /// One part of the path, as it was given.
  void setDirectory(const std::string& directory) { file_.directory = directory; }
  void setName(const std::string& name) { file_.name = name; }
  void setExtension(const std::string& extension) { file_.extension = extension; }
  const std::string& getDirectory() const { return file_.directory; }
  const std::string& getName() const { return file_.name; }
  const std::string& getExtension() const { return file_.extension; }
  /// @}

 private:
  name_of_file file_;
};
}  // namespace qs_lib
