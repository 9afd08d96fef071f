#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "spx/support/atomic_file.h"

namespace spx::console {

/// How the cells of a column are stored in a workbook.
enum class SHEET_COLUMN : std::uint8_t {
  TEXT,    ///< unchanged: IDs keep their zeros
  DATE,    ///< a day, a month or a year as a date with that format; everything else as text
  NUMBER,  ///< a decimal number as a number when it is read back unchanged; everything else as text
};

/// Writes an .xlsx workbook that Workbook::read() reads as the same cells. The titles are bold,
/// frozen and have filters. No cell is a formula, whatever it begins with. finish() replaces an
/// existing file as a whole; without it that file is unchanged.
class WorkbookWriter {
 public:
  /// Throws Failure when the file cannot be written.
  explicit WorkbookWriter(std::string file);
  ~WorkbookWriter();
  WorkbookWriter(const WorkbookWriter&) = delete;
  WorkbookWriter& operator=(const WorkbookWriter&) = delete;

  /// Begins the next sheet.
  void beginSheet(const std::string& name, std::span<const std::string> titles, std::vector<SHEET_COLUMN> columns);

  /// Throws Failure for a row or a text that is too long for a sheet.
  void addRow(std::span<const std::string_view> cells);

  /// Puts the workbook in its place. Throws Failure when anything was lost.
  void finish();

 private:
  struct book;

  void endSheet();
  void addCell(std::size_t column, std::string_view text);
  bool addDate(std::size_t column, std::string_view text);
  bool addNumber(std::size_t column, std::string_view text);
  void addText(std::size_t column, std::string_view text);
  void check(int error);

  std::string name_;
  qs_lib::AtomicFile file_;
  std::unique_ptr<book> book_;
  std::vector<SHEET_COLUMN> columns_;
  std::vector<std::size_t> widths_;
  std::size_t row_ = 0;
};

}  // namespace spx::console
