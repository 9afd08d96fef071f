#pragma once

#include <map>
#include <string>

#include "spx/core/master_data.h"
#include "spx/support/export.h"
#include "spx/support/text.h"

namespace spx {

/// A record as a flat map from field name to text.
using master_map = std::map<std::string, std::string, qs_lib::map_key<std::string>>;

/// The flat form of a record for exports, twelve keys: BIRTHDATE, BIRTHSITE (the deme's name), DAM,
/// DEATHAGE, DEATHDATE, FCOEF (4 decimals), GENERATION_A, _C, _G, _M (2 decimals), SEX, SIRE.
///
/// DEATHDATE and DEATHAGE (days, 1 decimal) are "NA" for the living and for animals lost to
/// follow-up. A death before the birth gives the age of the unsigned difference, near 4294967295:
/// readers of the table find such records by it. There is no key "ID", callers that need it add it.
SPX_EXPORT master_map masterToMap(const master_data& animal);

}  // namespace spx
