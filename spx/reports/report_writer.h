#pragma once

#include <string>

#include "spx/support/basic_stat.h"
#include "spx/support/data_range.h"
#include "spx/support/export.h"
#include "spx/support/xml_report.h"

namespace spx {

/// Writes the XML report of an analysis: a head with title and studbook, the body that the analysis
/// writes with the operations here and those of XmlReport, and a footer with the time used. The
/// owner sets directory, name and title before beginReport; a name without an extension gets "xml".
///
///     if (report.beginReport()) { report.writeView(true, false); ...; report.endReport(seconds); }
///
/// While no report is open all writing is ignored.
class SPX_EXPORT ReportWriter : public qs_lib::XmlReport {
 public:
  ReportWriter();
  /// Discards a report that is still open, that is, one without endReport(). A staged file then
  /// leaves an existing report unchanged, also in a forked child and at the exit of the process.
  ~ReportWriter() override;

  /// The file name of the XSL style sheet, linked when it is not empty. Empty by default.
  void setStyleSheet(const std::string& name) { style_sheet_ = name; }

  /// The directory of the style sheets; a leading "~" is the user's home. "~/spx/xsl" by default.
  void setStyleDirectory(const std::string& directory) { style_directory_ = directory; }

  /// A name that the owning analysis may keep here; not written. "result" by default.
  void setResultName(const std::string& name) { result_name_ = name; }
  /// The name set by setResultName().
  const std::string& resultName() const { return result_name_; }

  /// Opens a new file and writes declaration, style sheet and head. The file stays open.
  /// Format and database system come from the studbook, or from the active project where it has
  /// none.
  /// @return false, with nothing written, after "Cannot create report file"
  [[nodiscard]] bool beginReport();

  /// Writes the footer and closes the report. A file that the owner closed is opened again and
  /// continued at its end.
  /// Requires: beginReport() returned true.
  /// @param seconds  the time used, written with 4 decimals
  /// @return false after "Cannot re-open report file to write footer", also when no report was
  ///         begun; false without a message when not all of the report could be written
  [[nodiscard]] bool endReport(double seconds);

  /// FILTER with the attribute `set`.
  void writeFilter(const std::string& name, const std::string& value);

  /// FEATURE with the attribute `type`.
  void writeFeature(const std::string& type, const std::string& value);

  /// @{
  /// Opens a block VIEW with the attribute `system`; closeView closes it.
  void openView(const std::string& name);
  void closeView();
  /// @}

  /// Writes the settings of the active view as one block. "Events" is "all" whatever the view
  /// selects; kept on purpose. Bounds that are not set are left out.
  /// @param monitor  the monitor date instead of the period and the census
  /// @param flag     ignored; kept on purpose
  void writeView(bool monitor, bool flag);

  /// Writes the user-field filters of the active view as one block, which may be empty.
  void writeUserView();

  /// @{
  /// An element with a text, and with the attribute `describe`.
  void writeStatResult(const std::string& tag, const std::string& value);
  void writeStatResult(const std::string& tag, const std::string& description, const std::string& value);
  /// @}

  /// LEVEL, LOWER and UPPER of a confidence interval. @param alpha  0.05 is written as level 95.00
  void writeStatConfidence(double alpha, qs_lib::DataRange<double> range);

  /// The descriptive statistics of a variable, as siblings in the current element.
  /// @param what  names the variable in the descriptions
  void writeBasicStat(const qs_lib::basic_stat& stat, const std::string& what);

  /// One row of a frequency table, a block GROUP.
  void writeFrequency(unsigned long group, long observed, double rate);

 private:
  void linkStyleSheet();
  void writeProject();
  void writeViewDates(bool monitor);
  void writeViewBounds();

  std::string result_name_ = "result";
  std::string style_sheet_;
  std::string style_directory_ = "~/spx/xsl";
  bool begun_ = false;
};

}  // namespace spx
