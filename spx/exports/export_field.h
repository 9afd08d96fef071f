#pragma once

#include <cstddef>

#include "spx/analyses/analysis.h"
#include "spx/core/master_data.h"
#include "spx/support/export.h"

namespace spx {

/// Writes every field of the animals in the view as a table for R, "animal_data.csv" in the report
/// directory, which the host sets to the export path. The columns are the keys of masterToMap in
/// byte order, without an ID. Every line, also the header, ends in a TAB before its line feed.
class SPX_EXPORT ExportField : public Analysis {
 public:
  ExportField();
  ~ExportField() override;

  /// Whether the animal is exported: it passes origin, sex, date accuracies, taxon and user fields
  /// of the view, and died or was lost within the view's dates, both included. So the living, whose
  /// death date is 0, are left out unless the period starts at 0. The view's generation, inbreeding
  /// and demes are ignored.
  bool inAnalysis(const master_data& animal) const;

  /// Writes the file; an existing one is replaced as a whole. When no animal qualifies it is empty.
  /// One pass.
  /// @return false after "No animals in list" for an empty store; false without a message when the
  ///         file cannot be opened or not all of it could be written; an existing file is then
  ///         unchanged
  [[nodiscard]] bool exportToR();

  /// The number of animals in the last table.
  std::size_t exportedAnimals() const { return exported_animals_; }

 private:
  std::size_t exported_animals_ = 0;
};

}  // namespace spx
