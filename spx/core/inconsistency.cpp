#include "spx/core/inconsistency.h"

namespace spx {

std::string inconsistencyText(const inconsistency& finding) {
  switch (finding.code) {
    case INCONSISTENCY::DUPLICATE_ID:
      return "Multiple master records of " + finding.animal;
    case INCONSISTENCY::SIRE_NOT_MALE:
      return finding.parent + " is not a male!";
    case INCONSISTENCY::DAM_NOT_FEMALE:
      return finding.parent + " is not a female!";
    case INCONSISTENCY::SIRE_NOT_OLDER:
    case INCONSISTENCY::DAM_NOT_OLDER:
      break;
  }
  return finding.parent + " was born after birth of offspring " + finding.animal;
}

}  // namespace spx
