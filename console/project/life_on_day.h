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
  UNDATED,    ///< neither its birth nor an entry has a date, so its status is not known
  NO_RECORD   ///< it stands in for a parent without a row: its dates are invented
};

/// "living", "dead", "lost", "left", "not there yet", "undated", "no record".
const char* getText(LIFE_STATUS status);

/// The life of one animal up to a day, as the library's calculations follow it. Neonates and stillbirths always
/// count, whatever the view says.
class LifeOnDay {
 public:
  LifeOnDay(const master_data& animal, qs_lib::day_number day);

  LIFE_STATUS status() const;

  /// The age in years on the day, or when the animal was last known: at its death, or at its loss or departure when no
  /// death is recorded. Nothing when the birth is unknown, made up or after the day.
  std::optional<double> ageYears() const;

  /// Its location on the day; 0 when it is not there or the location is unknown.
  packed_deme location() const;

 private:
  /// The last stay that has begun by the day; null when there is none.
  const stay* lastStay() const;

  const master_data& animal_;
  qs_lib::day_number day_;
  life_course course_;
};

}  // namespace spx::console
