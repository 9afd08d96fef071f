#pragma once

#include <string>

#include "spx/analyses/analysis.h"
#include "spx/core/enumerations.h"
#include "spx/support/export.h"

namespace spx {

/// Writes the studbook as a pair of fixed-width files for population programs, "STUDBOOK.DAT" (an
/// animal a line) and "STUDBOOK.TRF" (a birth and a death line per animal), in the report
/// directory, which the host sets to the export path. Widths are minimum widths, padded on the
/// right; longer values are written whole. Both end in a line "@".
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

  /// "A" accurate, "D" by day, "M" by month and by week (the format knows no weeks), "Y" by year,
  /// "U" any other.
  static std::string convertAccuracy(DATE_ACCURACY accuracy);

  /// Writes both files; former ones are replaced as a whole. Only the taxa of the view are asked:
  /// pseudo individuals and animals outside its dates are written, and the living have a death
  /// line, too. One pass.
  /// @return false after "No animals in list" for an empty store; false without a message when a
  ///         file cannot be opened or not all of it could be written
  bool exportData();
};

}  // namespace spx
