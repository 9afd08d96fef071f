#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>

#include "spx/core/enumerations.h"
#include "spx/support/julian_date.h"

#include "console/output/table.h"
#include "console/project/life_on_day.h"

namespace spx::console {

/// The number of animals of a kind, and how many of them are living on the day.
struct kind_count {
  std::size_t all = 0;
  std::size_t living = 0;
};

/// The animal that reached the greatest age; the ID is empty when no birth date is known.
struct oldest_animal {
  std::string id;
  double days = 0;  ///< its age
};

/// A studbook, or the animals of a view, in numbers.
struct population_summary {
  qs_lib::day_number day = 0;             ///< the day on which animals count as living or not
  kind_count animals;                     ///< without placeholders
  std::array<std::size_t, 7> statuses{};  ///< by LIFE_STATUS
  std::size_t elsewhere = 0;              ///< living, but not in the locations of the view
  std::map<SEX, kind_count> sexes;
  std::map<BIRTH_TYPE, kind_count> origins;
  std::map<DATE_ACCURACY, std::size_t> birth_accuracy;  ///< of all animals
  std::map<DATE_ACCURACY, std::size_t> death_accuracy;  ///< of those with a death or loss by the day
  std::size_t without_birth = 0;                        ///< animals without a birth date
  // Parents are unknown when their identifier begins with "UNK"; a wild parent is known.
  kind_count unknown_both;
  kind_count unknown_sire;  ///< the sire alone
  kind_count unknown_dam;   ///< the dam alone
  kind_count group_sire;    ///< the sire is a group
  kind_count group_dam;
  kind_count breeders;  ///< have offspring in the studbook
  /// Founders have no known parent: both are wild or unknown.
  kind_count founders;
  kind_count breeding_founders;
  kind_count wild_parents;               ///< both parents are wild
  kind_count breeding_wild_parents;      ///< and have offspring
  std::size_t placeholder_founders = 0;  ///< stand-ins of parents without a record that have offspring
  oldest_animal oldest;                  ///< at its end, or on the day
  oldest_animal oldest_living;
};

/// Counts the animals of the view (animalsOfView) for its day. Linear.
population_summary summarise();

/// For people: a row per kind with the numbers of all and of the living.
Table summaryPage(const population_summary& summary);

/// For scripts: one record.
Table summaryRecord(const population_summary& summary);

}  // namespace spx::console
