#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "console/tables/row_source.h"

namespace spx::console {

/// A workbook, .xlsx or .ods, with the texts of its cells: numbers as shortest decimals, dates as
/// YYYY-MM-DD (YYYY-MM or YYYY where only that is shown and the rest is the first day), formulas as
/// their last results. Numbers that are shown with leading zeros keep them, and every cell of
/// vertically merged cells has the value of the first.
///
/// The file is read in a separate process, with limits of memory and time that depend on its size,
/// so that a damaged or hostile file only leads to a message.
class Workbook {
 public:
  /// Throws TableError.
  static std::shared_ptr<const Workbook> read(const std::string& file);

  /// The names of the sheets that have cells, in their order.
  const std::vector<std::string>& sheetNames() const { return names_; }

  /// The rows of a sheet: the first one that is not empty gives the titles. Rows are as wide as the
  /// titles, or as wide as their last cell that is not empty.
  static std::unique_ptr<RowSource> openSheet(std::shared_ptr<const Workbook> workbook, std::size_t sheet);

 private:
  explicit Workbook(std::string bytes);

  std::string bytes_;  ///< as writeWorkbookCells writes them
  std::vector<std::string> names_;
  std::vector<std::size_t> first_rows_;  ///< where the rows of each sheet begin
};

/// Whether the file begins like an .xlsx or .ods workbook, or like an .xls file.
bool isWorkbook(const std::string& file);

}  // namespace spx::console
