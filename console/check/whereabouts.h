#pragma once

#include <vector>

#include "console/check/checked_records.h"

namespace spx::console {

/// Where animals can have been. A place is excluded only when the records exclude it: dates are taken as ranges,
/// and an animal that left the population, or whose location is not known, can have been anywhere.
class Whereabouts {
 public:
  explicit Whereabouts(const CheckedRecords& records);

  /// The places where an animal can have been on some day of the range. Empty where that is not known.
  std::vector<packed_deme> placesOf(const master_data& animal, date_range days) const;

  /// Whether two places are certainly two institutions: both are known, and neither institution lies within the
  /// other. Enclosures of one institution are not apart.
  bool areApart(packed_deme a, packed_deme b) const;

  /// Whether no place of one list can be a place of the other. Lists that are empty are not apart.
  bool areApart(const std::vector<packed_deme>& a, const std::vector<packed_deme>& b) const;

  /// The name of a place as sentences show it.
  std::string name(packed_deme place) const;

 private:
  bool isKnown(packed_deme place) const { return place != 0 && place != unknown_; }
  packed_deme institutionOf(packed_deme place) const;

  const MetaPopulation& locations_;
  bool has_arrivals_ = false;  ///< whether any events record arrivals
  packed_deme unknown_ = 0;    ///< the deme of the animals whose location is not known
  int institution_level_ = 0;
};

}  // namespace spx::console
