#pragma once

#include "spx/analyses/analysis.h"
#include "spx/support/export.h"

namespace spx {

/// Writes the pedigree as a table for R, "pedigree.csv" in the report directory, which the host
/// sets to the export path: a header and one row per real individual in the order of the pedigree
/// list, separated by "|".
///
/// Columns: ID, DAM and SIRE ("NA" for pseudo individuals; the resolved parents), SEX (1 male, 2
/// female, 3 other), BIRTHSITE, BIRTHDATE and DEATHDATE (YYYYMMDD, empty when unknown), CENSORED (1
/// for the dead, 0 for the living and the lost), F (5 decimals, "nan" when not computed), G
/// (maternal generation without its fraction; -2147483648 when not computed), TAXON, BREEDER ("yes"
/// or "no").
class SPX_EXPORT ExportPedigree : public Analysis {
 public:
  ExportPedigree();
  ~ExportPedigree() override;

  /// Writes the file; an existing one is replaced as a whole. One pass. Without a pedigree only the
  /// header is written.
  /// Requires: no record was added since the pedigree was built.
  /// @return false after "No animals in list" for an empty store; false without a message when the
  ///         file cannot be opened or not all of it could be written; an existing file is then
  ///         unchanged
  [[nodiscard]] bool exportToR();
};

}  // namespace spx
