#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "spx/core/master_data.h"
#include "spx/demography/dated_life.h"
#include "spx/demography/location_set.h"
#include "spx/support/export.h"
#include "spx/views/data_filter.h"

/// Where animals were, and when. All demographic counts are made from these stays, so a zoo, a
/// region and the whole population are computed in the same way.
namespace spx {

/// The end of a stay that has not ended.
inline constexpr qs_lib::day_number STILL_THERE = std::numeric_limits<qs_lib::day_number>::max();

/// How a stay began.
enum class STAY_START : std::uint8_t {
  BORN,     ///< the animal was born there
  ENTERED,  ///< it came from the wild or from outside the population
  ARRIVED   ///< it came from another location of the population
};

/// How a stay ended.
enum class STAY_END : std::uint8_t {
  PRESENT,   ///< it has not ended
  DIED,      ///< the animal died
  DEPARTED,  ///< it left the population: released, surplus, population out
  LOST,      ///< nothing is known of it from then on
  MOVED      ///< it went to another location of the population
};

/// A time in one place: from its first day up to, but not including, the day on which it ends. A
/// stay of no length (a stillbirth; an arrival and a departure on the same day) begins and ends on
/// that day and never shows in a count of animals on a day.
struct stay {
  qs_lib::day_number from = 0;          ///< first day
  qs_lib::day_number to = STILL_THERE;  ///< the day of the death or departure
  packed_deme location = 0;             ///< where it began
  STAY_START start = STAY_START::BORN;
  STAY_END end = STAY_END::PRESENT;
};

/// Whether the day lies in the stay.
inline bool isDuring(const stay& time, qs_lib::day_number day) {
  return time.from <= day && day < time.to;
}

/// What the calculation of stays needs besides the records.
struct presence_settings {
  bool use_neonate = true;     ///< take animals that died as neonates
  bool use_stillbirth = true;  ///< take animals that died on the day of their birth
  double neonatal_days = 30;   ///< a death at up to this age in days is a neonate's
  double emerge_days = 0;      ///< animals count from this many days after birth
  /// @{
  /// Animals without an end that would be older than this, in days, at the end of the period are
  /// lost at their last event; 0: no such limit. Where the sex is unknown both limits must be passed.
  double longest_male_life = 0;
  double longest_female_life = 0;
  /// @}
  qs_lib::day_number until = STILL_THERE;  ///< the end of the period
};

/// The settings of a view and of the life history of the species in use (LifeHistory).
SPX_EXPORT presence_settings presenceSettings(const DataFilter& view);

/// Why an animal of the view is not counted. An analysis counts the first reason that holds.
enum class LEFT_OUT : std::uint8_t {
  NO_DATES,           ///< neither birth nor entry has a date
  ENDS_BEFORE_BIRTH,  ///< its death or loss lies before its birth
  STILLBIRTH,         ///< died on the day of its birth, and the view excludes stillbirths
  NEONATE,            ///< died as a neonate, and the view excludes neonates
  BEFORE_EMERGENCE,   ///< died or left before it could emerge from the den
  NEVER_THERE,        ///< never in the locations of the view
  OUTSIDE_PERIOD,     ///< there, but not in the period
  UNKNOWN_SEX,        ///< its sex is unknown, and such animals are ignored
  UNKNOWN_AGE,        ///< its birth is not known to within a class
  UNKNOWN_ENTRY,      ///< wild-born, and the day of its arrival is unknown
  NOT_DEAD,           ///< no death is known, and the view takes completed lives only
  NO_GROUP,           ///< the property that defines the groups is unknown
  NOT_BORN,           ///< not born in the locations and the period
  COUNT               ///< the number of reasons
};

/// A reason in words, worded to follow "5 animals: ".
SPX_EXPORT const char* getText(LEFT_OUT reason);

/// Numbers of animals by LEFT_OUT.
struct left_out_counts {
  std::array<std::size_t, static_cast<std::size_t>(LEFT_OUT::COUNT)> counts{};
  std::size_t& operator[](LEFT_OUT reason) { return counts[static_cast<std::size_t>(reason)]; }
  std::size_t operator[](LEFT_OUT reason) const { return counts[static_cast<std::size_t>(reason)]; }
  /// The sum over all reasons.
  SPX_EXPORT std::size_t total() const;
};

/// The life of one animal as the calculations take it.
struct life_course {
  qs_lib::day_number birth = 0;        ///< the day that ages are counted from; 0: unknown
  qs_lib::day_number birth_error = 0;  ///< days to either side that the birth may be off
  bool assumed_entry = false;          ///< wild-born without an entry: assumed to be there from birth
  std::vector<stay> stays;             ///< in order of time, never overlapping
};

/// Follows an animal through the population, place by place.
///
/// It is there from its birth. An animal that was born in the wild, or whose first event is "from
/// wild" or "population in", is there from its first event that is not a departure; one without a
/// date of birth likewise. "Released", "population out", "surplus", a loss and the death end a
/// stay; "arrival", "population in" and "from wild" bring it back. Every event may change the
/// location. Social and management events change the location only: an animal that leaves a group
/// or a programme is still alive and there.
///
/// Contradictions: an entry of an animal that is there changes its location only; departures and
/// other events of one that is gone are ignored; all are counted in `findings`.
/// @param course  replaced
/// @return why the animal has no stays; COUNT when it has some
SPX_EXPORT LEFT_OUT followLife(const master_data& animal, const presence_settings& settings, life_course& course,
                               life_findings& findings);

/// STILLBIRTH or NEONATE for an animal that died so young that the settings take it out; otherwise
/// COUNT. A stillbirth died on the day of its birth, both days being exactly known.
/// @param life  by datedLife; not empty
SPX_EXPORT LEFT_OUT earlyDeath(const master_data& animal, const std::vector<life_event>& life,
                               const presence_settings& settings);

/// Joins the stays in the chosen locations: going from one to another is not a departure. The ends
/// say where the animal came from and went to; stays elsewhere are dropped.
SPX_EXPORT void joinStays(const LocationSet& locations, std::vector<stay>& stays);

/// Drops the stays elsewhere.
SPX_EXPORT void keepStays(const LocationSet& locations, std::vector<stay>& stays);

/// Whether the view includes an animal by its record alone: not a pseudo individual; origin, sex,
/// rearing, generation, inbreeding, accuracy of the dates (those it has), taxon and user filters as
/// set. Periods, locations and ages are not considered.
SPX_EXPORT bool isInViewRecord(const master_data& animal, const DataFilter& view);

/// Whether an animal was alive and present in the locations of the view on a day, by the rules
/// above. For many animals make a Presence once, or keep the LocationSet.
SPX_EXPORT bool isPresent(const master_data& animal, qs_lib::day_number day, const LocationSet& locations,
                          const presence_settings& settings);

/// Whether stays that follow each other within the chosen locations are joined into one.
enum class STAYS : std::uint8_t { JOINED, BY_LOCATION };

/// The stays of all animals of a view in its locations.
class SPX_EXPORT Presence {
 public:
  /// An animal that was there at some time.
  struct life {
    position animal = 0;                 ///< its record
    qs_lib::day_number birth = 0;        ///< 0: unknown
    qs_lib::day_number birth_error = 0;  ///< days to either side
    std::size_t first_stay = 0;          ///< in the list of all stays
    std::uint32_t number_of_stays = 0;   ///< at least 1
    SEX sex = SEX::UNKNOWN;              ///< the record's
    bool assumed_entry = false;          ///< see life_course
  };

  /// Follows the records that the view includes (isInViewRecord). The view's period does not cut
  /// the stays. Linear in records and events.
  Presence(const std::vector<master_data>& records, const DataFilter& view, const presence_settings& settings,
           STAYS join = STAYS::JOINED);

  /// The animals that were ever there, in the order of the records.
  const std::vector<life>& lives() const { return lives_; }

  /// The stays of one of them, in order of time; at least one.
  std::span<const stay> stays(const life& one) const { return {stays_.data() + one.first_stay, one.number_of_stays}; }

  /// Whether one of them was alive and there on a day.
  bool isPresent(const life& one, qs_lib::day_number day) const;

  /// The records of the animals that were alive and there on a day, in their order.
  std::vector<position> presentOn(qs_lib::day_number day) const;

  std::size_t in_view = 0;   ///< animals of the view: lives and those left out
  left_out_counts left_out;  ///< animals of the view without a stay there
  life_findings findings;    ///< contradictions of all animals of the view

 private:
  void add(position animal, const master_data& record, const life_course& course);

  std::vector<life> lives_;
  std::vector<stay> stays_;
};

}  // namespace spx
