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
/// Dates are "YYYY-MM-DD"; an unknown birth date or site is empty, a number that is not computed
/// "nan". DEATHDATE and DEATHAGE (days, 1 decimal) are "NA" for the living and for animals lost to
/// follow-up. Ages are unsigned differences of day numbers: a death before the birth gives one near
/// 4294967295, an unknown birth the day number of the death; kept on purpose, such records can be
/// found by it. There is no key "ID".
SPX_EXPORT master_map masterToMap(const master_data& animal);

}  // namespace spx
