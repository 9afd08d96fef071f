#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/demography/presence.h"
#include "spx/support/export.h"

namespace spx {

/// The birth of one animal.
struct birth_record {
  static constexpr position NO_PARENT = std::numeric_limits<position>::max();  ///< not known

  position child = 0;
  position sire = NO_PARENT;
  position dam = NO_PARENT;
  qs_lib::day_number day = 0;  ///< the day that calculations use
  SEX sex = SEX::UNKNOWN;      ///< of the child
};

/// The dated births of a studbook, in the order of its pedigree. Wild-born animals and pseudo
/// individuals have none; parents that are pseudo individuals are not known. Stillbirths and
/// neonates that the settings exclude are left out too.
/// @param store  with its pedigree (AnimalData::populationPedigree); without it there are no births
SPX_EXPORT std::vector<birth_record> birthsOf(const AnimalData& store, const presence_settings& settings);

/// The share of males among the births whose sex is known; one half where there are none.
SPX_EXPORT double maleShareAtBirth(const std::vector<birth_record>& births);

}  // namespace spx
