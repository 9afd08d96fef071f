#pragma once

#include <string>

#include "spx/support/key_file_entries.h"

namespace qs_lib {
/// The text of a key file; docs/key-files.md describes the format.
std::string keyFileText(const std::string& section, const key_file_entries& entries);

/// Reads the text of a key file, line by line.
class KeyFileParser {
 public:
  /// Takes the next line, without its line feed.
  /// @return false when the line is not valid in a key file
  bool takeLine(const std::string& line);

  /// Whether the end mark was read: the file is complete.
  bool isComplete() const { return state_ == parser_state::ENDED; }

  const std::string& section() const { return section_; }
  key_file_entries& entries() { return entries_; }

 private:
  enum class parser_state { BEFORE_SECTION, ENTRIES, ENDED };

  bool takeBracketLine(const std::string& line);
  bool takeEntry(const std::string& line);

  parser_state state_ = parser_state::BEFORE_SECTION;
  bool first_line_ = true;
  std::string section_;
  std::string description_;  ///< the comment line just read
  key_file_entries entries_;
};
}  // namespace qs_lib
