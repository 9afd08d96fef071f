#pragma once

#include <cstdint>
#include <optional>

#include "spx/core/master_data.h"
#include "spx/demography/presence.h"

namespace spx::console {

/// What became of an animal by a day.
enum class LIFE_STATUS : std::uint8_t {
  LIVING,
  DEAD,
  LOST,       ///< lost to follow-up
  LEFT,       ///< it left the population: released, surplus, sold out of it
  NOT_THERE,  ///< not yet born, or not yet arrived
  UNDATED,    ///< neither its birth nor an entry has a date, so nobody can tell
  NO_RECORD   ///< it stands in for a parent without a row: its dates are made up
};

/// "living", "dead", "lost", "left", "not there yet", "undated", "no record".
const char* getText(LIFE_STATUS status);

/// The life of one animal as the calculations of the library follow it, seen from a day. Neonates and stillbirths
/// count whatever the view says: they lived.
class LifeOnDay {
 public:
  LifeOnDay(const master_data& animal, qs_lib::day_number day);

  LIFE_STATUS status() const;

  /// In years, on the day, or when the animal was last known: at its death, or at its loss or departure where no death
  /// is recorded. Nothing when the birth is unknown, made up or later.
  std::optional<double> ageYears() const;

  /// Where it is on the day; 0 when it is not there or nobody knows.
  packed_deme location() const;

 private:
  /// The last stay that has begun; null when none has.
  const stay* lastStay() const;

  const master_data& animal_;
  qs_lib::day_number day_;
  life_course course_;
};

}  // namespace spx::console
