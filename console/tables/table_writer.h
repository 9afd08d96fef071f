#pragma once

#include <span>
#include <string>
#include <string_view>

#include "spx/support/write_file.h"

namespace spx::console {

/// The form of a CSV table.
struct csv_form {
  char separator = ',';
  /// Writes a byte-order mark, and an apostrophe before texts that a spreadsheet would take for a formula.
  bool for_spreadsheet = false;
};

/// Whether a spreadsheet would take a text for a formula: it begins with "=", "+", "-", "@" or a
/// control character, and is not a number. Also of a text that begins with apostrophes and goes on so: readers drop one
/// of them, and writers add one.
bool looksLikeFormula(std::string_view text);

/// Writes a CSV table that is read back as the same cells: commas, line feeds, quotes only where a cell needs them.
/// finish() replaces an existing file as a whole; without it that file is unchanged.
class TableWriter {
 public:
  /// Throws Failure when the file cannot be written.
  explicit TableWriter(std::string file, csv_form form = {});

  void addTitles(std::span<const std::string> titles);
  void addRow(std::span<const std::string_view> cells);

  /// Puts the table in its place. Throws Failure when anything was lost.
  void finish();

 private:
  void addCell(std::string_view text, std::string_view quoted);
  std::string_view separator() const { return {&form_.separator, 1}; }

  std::string name_;
  csv_form form_;
  qs_lib::WriteFile file_;
  std::string cell_;
};

}  // namespace spx::console
