#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "spx/support/export.h"
#include "spx/support/report.h"
#include "spx/support/table.h"

namespace qs_lib {
/// Writes a delimited table. The caller ends each row with a line feed in stream().
///
/// A declared table begins with writeHeader() and writes the separators itself. A free table has no
/// header, and the caller writes the separators.
///
/// Texts are quoted where a reader would misread them otherwise, see appendCsvText().
class SPX_EXPORT CsvReport : public Report {
 public:
  CsvReport();
  ~CsvReport() override;  ///< closes the file, as WriteFile does

  /// Declares the columns and writes the header line.
  /// @param header  the names joined by "|", whatever the separator of the file is
  void writeHeader(const std::string& header);

  /// @{
  /// Writes one cell. In a declared table the separator follows when more cells of the row do.
  void cell(std::string_view value, bool more);
  void cell(int value, bool more);
  /// @}

  /// A real number needs a number of digits; without one it would be written as a whole number.
  template <std::floating_point Real>
  void cell(Real value, bool more) = delete;

  /// Writes a number in fixed notation; NaN gives "nan".
  void cell(double value, int digits, bool more);

  /// The text between two cells. Requires: set before the first cell is written.
  char separator = '|';

 private:
  void endCell(bool more);

  Table table_;
  std::string cell_;  ///< the text that was made last; its memory is kept
};
}  // namespace qs_lib
