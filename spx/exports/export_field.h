#pragma once

#include "spx/analyses/analysis.h"
#include "spx/core/master_data.h"
#include "spx/support/export.h"

namespace spx {

/// Writes every field of the animals in the view as a table for R, "animal_data.csv" in the report
/// directory, which the host sets to the export path. The columns are the keys of masterToMap in
/// byte order; there is no ID. Every line, the header too, ends in a TAB before its line feed.
class SPX_EXPORT ExportField : public Analysis {
 public:
  ExportField();
  ~ExportField() override;

  /// Whether the animal is exported: it passes origin, sex, date accuracies, taxon and user fields
  /// of the view, and died or was lost within the view's dates, both included. So the living, whose
  /// death date is 0, are left out unless the period starts at 0. Generation, inbreeding and demes
  /// are not asked.
  bool inAnalysis(const master_data& animal) const;

  /// Writes the file; a former one is replaced as a whole. When no animal qualifies it is empty.
  /// One pass.
  /// @return false after "No animals in list" for an empty store; false without a message when the
  ///         file cannot be opened or not all of it could be written; a former file is whole then
  bool exportToR();
};

}  // namespace spx
