#pragma once

#include <cstdint>
#include <string>

#include "spx/support/export.h"
#include "spx/support/time_interval.h"

/// @file
/// The closed value sets of a studbook. View and life-history files store the numbers; listings,
/// reports and exports print the display names. Neither may change.
namespace spx {

/// The sex of an animal. ALL is a wildcard of views and never the sex of a record.
enum class SEX : std::uint32_t { FEMALE, MALE, HERMAPHRODITE, ABNORMAL, UNKNOWN, ALL };

/// The state of birth control. NO_SELECTION is the wildcard of views.
enum class BIRTH_CONTROL : std::uint32_t { INTACT, NEUTERED, VASECTOMY, CONTRACEPTED, REVERSED, NO_SELECTION };

/// The kind of a life event.
enum class MOVE_TYPE : std::uint32_t {
  BIRTH,
  FROM_WILD,
  ARRIVAL,
  POPULATION_IN,
  SOCIAL_IN,
  MANAGEMENT_IN,
  RELEASED,
  POPULATION_OUT,
  SOCIAL_OUT,
  MANAGEMENT_OUT,
  LOST_TO_FOLLOW_UP,  ///< as end event: the animal left the records alive
  DEATH,
  SURPLUS,
  NO_EVENT,
  ALL
};

/// How exact a date is, from the best to the worst. ALL_DATES is the wildcard of views.
enum class DATE_ACCURACY : std::uint32_t {
  ACCURATE,
  BY_DAY,
  BY_WEEK,
  BY_MONTH,
  BY_YEAR,
  DATE_RANGE,  ///< the event's range holds the uncertainty in days
  UNKNOWN,
  ALL_DATES
};

/// The origin of an animal. ALL is the wildcard of views.
enum class BIRTH_TYPE : std::uint32_t { WILD_BORN, CAPTIVE_BORN, UNKNOWN, ALL };

/// How an animal was reared. ALL is the wildcard of views.
enum class REARING : std::uint32_t { PARENT, HAND, FOSTER, COLONY, SUPPLEMENTAL, PEER, NONE, UNKNOWN, ALL };

/// The key by which a list is ordered. The enumerators follow the display names; what
/// AnimalData::sortList does for SIRE_ID, DAM_ID and EVENT is one step off (see there).
enum class SORT_FIELD : std::uint32_t {
  NO_ORDER,
  BIRTH,
  DEATH,
  STUDBOOK_ID,
  SIRE_ID,
  DAM_ID,
  EVENT,
  LOCATION,
  UNKNOWN_ORDER
};

/// The direction of a sort.
enum class SORT_ORDER : std::uint32_t { ASCENDING, DESCENDING };

/// How a species bears its young.
enum class REPRODUCTIVE_SYSTEM : std::uint32_t { OVIPAROUS, OVOVIVIPAROUS, VIVIPAROUS, UNKNOWN };

/// Whether births occur all the year or in a season.
enum class REPRODUCTIVE_SEASON : std::uint32_t { BIRTH_FLOW, BIRTH_PULSE };

/// How animals of unknown sex, or unknown parents, are to be treated.
enum class HANDLE_UNKNOWN : std::uint32_t { IGNORE, EQUAL, OBSERVED_RATIO };

/// Which offspring count as viable.
enum class OFFSPRING_VIABILITY : std::uint32_t { ALL, STILLBIRTHS, NON_VIABLE, NEONATAL, VIABLE };

/// @{
/// The display name of a value, lower case as listings, reports and exports print it.
/// A value beyond the table, as a damaged file may hold, gives the empty text.
SPX_EXPORT std::string getEnumName(SEX value);
SPX_EXPORT std::string getEnumName(BIRTH_CONTROL value);
SPX_EXPORT std::string getEnumName(MOVE_TYPE value);
SPX_EXPORT std::string getEnumName(DATE_ACCURACY value);
SPX_EXPORT std::string getEnumName(BIRTH_TYPE value);
SPX_EXPORT std::string getEnumName(REARING value);
SPX_EXPORT std::string getEnumName(SORT_FIELD value);
/// @}
/// "ascending" for ASCENDING and "descending" for every other value.
SPX_EXPORT std::string getEnumName(SORT_ORDER value);
/// @{
/// The display name, or the empty text beyond the table.
SPX_EXPORT std::string getEnumName(REPRODUCTIVE_SYSTEM value);
SPX_EXPORT std::string getEnumName(REPRODUCTIVE_SEASON value);
SPX_EXPORT std::string getEnumName(HANDLE_UNKNOWN value);
SPX_EXPORT std::string getEnumName(OFFSPRING_VIABILITY value);
SPX_EXPORT std::string getEnumName(qs_lib::TIME_INTERVAL value);
/// @}

}  // namespace spx
