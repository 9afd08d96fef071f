#pragma once

#include <cstdint>
#include <string>

#include "spx/support/export.h"

namespace spx {

/// What validation finds wrong with an animal.
enum class INCONSISTENCY : std::uint32_t {
  DUPLICATE_ID,    ///< more than one record has the animal's ID
  SIRE_NOT_MALE,   ///< the sire's sex is not male; unknown counts as not male
  SIRE_NOT_OLDER,  ///< the animal was born on the sire's birth day or earlier
  DAM_NOT_FEMALE,  ///< unknown counts as not female
  DAM_NOT_OLDER    ///< the animal was born on the dam's birth day or earlier
};

/// One finding of AnimalData::validate.
struct inconsistency {
  INCONSISTENCY code;  ///< what is wrong
  std::string animal;  ///< the studbook ID of the record that was checked
  std::string parent;  ///< the studbook ID of the parent concerned; empty for DUPLICATE_ID
};

/// The line of the studbook's error file for a finding, without its line end.
SPX_EXPORT std::string inconsistencyText(const inconsistency& finding);

}  // namespace spx
