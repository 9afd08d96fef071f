#pragma once

#include <string>

#include "spx/analyses/analysis.h"
#include "spx/core/enumerations.h"
#include "spx/support/export.h"
#include "spx/support/write_file.h"

namespace spx {

/// Writes the studbook as a pair of fixed-width files for population programs, "STUDBOOK.DAT" (one
/// line per animal) and "STUDBOOK.TRF" (a birth and a death line per animal), in the report
/// directory, which the host sets to the export path. Widths are minimum widths, padded on the
/// right; longer values are written whole. The last line of both is "@".
///
/// DAT: ID 6, dam 6, sire 6 (the dam first), sex 1, origin, birth date 8, accuracy 1, death date 8,
/// accuracy 1, "T". TRF: ID 6, date 8, accuracy 1, "B" or "D", location number 9. Dates are
/// YYYYMMDD, blank when unknown.
class SPX_EXPORT ExportDattrf : public Analysis {
 public:
  ExportDattrf();
  ~ExportDattrf() override;

  /// "M" male, "F" female, "U" any other.
  static std::string convertSex(SEX sex);

  /// "C" captive-born, "W" wild-born, "U" any other.
  static std::string convertOrigin(BIRTH_TYPE origin);

  /// "A" accurate, "D" by day, "M" by month and by week (the format has no code for weeks), "Y" by
  /// year, "U" any other.
  static std::string convertAccuracy(DATE_ACCURACY accuracy);

  /// Writes both files; existing ones are replaced as a whole. Of the view only the taxa count:
  /// pseudo individuals and animals outside its dates are written too, and the living have a death
  /// line. One pass.
  /// @return false after "No animals in list" for an empty store; false without a message when a
  ///         file cannot be opened or not all of it could be written; see failedFile()
  [[nodiscard]] bool exportData();

  /// The path of the file that the last exportData() could not write; empty when there is none.
  const std::string& failedFile() const { return failed_file_; }

 private:
  bool closeBoth(qs_lib::WriteFile& dat, qs_lib::WriteFile& trf);

  std::string failed_file_;
};

}  // namespace spx
