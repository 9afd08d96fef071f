#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "spx/core/enumerations.h"
#include "spx/core/master_data.h"
#include "spx/demography/kaplan_meier.h"
#include "spx/demography/presence.h"
#include "spx/support/export.h"
#include "spx/views/data_filter.h"

/// How long the animals of a view live.
namespace spx {

/// By what animals are compared.
enum class SURVIVAL_GROUPS : std::uint8_t { NONE, SEX, ORIGIN, REARING, LOCATION, TAXON, PERIOD };

/// What a comparison needs besides the view.
struct survival_settings {
  SURVIVAL_GROUPS by = SURVIVAL_GROUPS::NONE;
  int level = 0;          ///< LOCATION: places are compared at this depth, counted from 0
  int period_years = 10;  ///< PERIOD: calendar years; the first year of each is divisible by it
};

/// The ages over which animals were watched, in days.
struct survival_data {
  std::vector<observed_time> times;        ///< an animal with several stays has several
  std::vector<qs_lib::day_number> births;  ///< by record: the day that ages are counted from; 0: unknown
  std::vector<std::string> groups;         ///< names, by observed_time::group; "all" without groups
  std::size_t in_view = 0;                 ///< animals of the view: counted and left out
  std::size_t counted = 0;                 ///< animals with at least one time
  left_out_counts left_out;                ///< the others, by reason
  life_findings findings;                  ///< contradictions in their events
};

/// Takes from the records the ages over which the animals of a view were watched.
///
/// An animal is watched while it is there (Presence) and in the view's period, from the age at
/// which it comes to the age at which it dies, leaves or is last seen; it is at risk in between
/// only. Without left truncation it counts as watched from birth; without right censoring only
/// animals whose death is known count. An animal that dies on the day on which it comes, a
/// stillbirth too, is watched for half a day. Ages are those of Presence; left out are animals
/// whose birth is not known to within one class width of the view (UNKNOWN_AGE) and, with left
/// truncation, wild-born ones without an entry (UNKNOWN_ENTRY). Linear.
SPX_EXPORT survival_data survivalData(const std::vector<master_data>& records, const DataFilter& view,
                                      const presence_settings& presence, const survival_settings& settings);

/// The curve of one group.
SPX_EXPORT survival_curve survivalOf(const survival_data& data, std::uint32_t group);

/// Whether the age of an animal is known to within classes of `class_width` days.
SPX_EXPORT bool isAgeKnown(const Presence::life& life, double class_width);

}  // namespace spx
