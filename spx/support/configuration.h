#pragma once

#include <string>

#include "spx/support/export.h"
#include "spx/support/key_file_entries.h"

namespace qs_lib {
/// A key file held in memory. The file is text that a person can read and edit: the section in
/// brackets, then for every key its description, type and value, in key order. Any bytes in any
/// of these texts come back exactly.
class SPX_EXPORT Configuration {
 public:
  using entry_map = key_file_entries;

  Configuration();
  /// @{
  /// A copy has the same entries, name and flags; the file is not touched.
  Configuration(const Configuration&) = default;
  Configuration(Configuration&&) = default;
  Configuration& operator=(const Configuration&) = default;
  Configuration& operator=(Configuration&&) = default;
  /// @}
  virtual ~Configuration();  ///< does not save

  /// Reads the file named by directory, name and extension and replaces the entries.
  /// @return false, with the entries unchanged, when it cannot be read, is not a complete key file,
  ///         or has another section while the section must match
  virtual bool load();

  /// Writes all entries to the file. After a failure or a crash the existing file is unchanged.
  /// @return false when the file could not be written completely
  [[nodiscard]] virtual bool save();

  /// Creates the entry or replaces it whole.
  void set(const std::string& key, const std::string& type, const std::string& value, const std::string& description);

  /// A copy of the entry; three empty texts for a key that is absent.
  ConfigElement get(const std::string& key) const;

  /// The entries in key order; valid until they are changed.
  const entry_map& entries() const { return entries_; }
  void clearEntries() { entries_.clear(); }  ///< removes every entry; the file stays

  /// @{
  /// One part of the path, with "~" as it was given, or the section.
  void setDirectory(const std::string& directory) { directory_ = directory; }
  void setName(const std::string& name) { name_ = name; }
  void setExtension(const std::string& extension) { extension_ = extension; }
  void setSection(const std::string& section) { section_ = section; }
  const std::string& getDirectory() const { return directory_; }
  const std::string& getName() const { return name_; }
  const std::string& getExtension() const { return extension_; }
  const std::string& getSection() const { return section_; }
  /// @}

  /// The path of the file, with a leading "~" replaced by the home directory.
  std::string getFileName() const;

  /// @{
  /// Whether the owner saves the file when it is destroyed; false at first.
  void setSaveOnClose(bool save) { save_on_close_ = save; }
  bool isSaveOnClose() const { return save_on_close_; }
  /// @}

  /// @{
  /// Whether load() accepts only files of this section; true at first. Without a section every
  /// key file is accepted.
  void setMatchSection(bool match) { match_section_ = match; }
  bool isMatchSection() const { return match_section_; }
  /// @}

 private:
  entry_map entries_;
  std::string directory_;
  std::string name_;
  std::string extension_;
  std::string section_;
  bool save_on_close_ = false;
  bool match_section_ = true;
};
}  // namespace qs_lib
