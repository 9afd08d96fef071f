#pragma once

#include <span>
#include <string>
#include <string_view>

#include "spx/support/write_file.h"

namespace spx::console {

/// Writes a CSV table that reads as the same cells: commas, line feeds, quotes only where a cell
/// needs them. A former file is replaced as a whole by finish(), and otherwise stays.
class TableWriter {
 public:
  /// Throws Failure when the file cannot be written.
  explicit TableWriter(std::string file);

  void addTitles(std::span<const std::string> titles);
  void addRow(std::span<const std::string_view> cells);

  /// Puts the table in its place. Throws Failure when anything was lost.
  void finish();

 private:
  void addCell(std::string_view text, std::string_view quoted);

  std::string name_;
  qs_lib::WriteFile file_;
  std::string cell_;
};

}  // namespace spx::console
