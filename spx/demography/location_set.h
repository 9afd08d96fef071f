#pragma once

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "spx/core/deme_id.h"
#include "spx/support/export.h"

namespace spx {

/// A choice of locations: each one with all that lies within it.
class SPX_EXPORT LocationSet {
 public:
  /// @param demes  packed identifiers, as a view holds them; empty for all locations, the unknown
  ///               one (0) included
  explicit LocationSet(const std::set<packed_deme>& demes);

  /// Whether a location is chosen, or lies within one that is. Linear in the number of choices.
  bool contains(packed_deme location) const;

  /// Whether every location is chosen.
  bool all() const { return choices_.empty(); }

 private:
  std::vector<std::pair<std::uint64_t, std::uint64_t>> choices_;  ///< used bytes, identifier
};

}  // namespace spx
