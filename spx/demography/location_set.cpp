#include "spx/demography/location_set.h"

#include <algorithm>

namespace spx {
namespace {

constexpr std::uint64_t BLOCK = 0xFF;

// A mask of the blocks down to the deepest one that is not 0. A location lies within a choice when
// the location, masked with the choice's mask, equals the choice.
std::uint64_t usedBlocks(std::uint64_t deme) {
  std::uint64_t mask = 0;
  for (int block = 0; block < DemeID::LEVELS; ++block) {
    const std::uint64_t at = BLOCK << (8 * block);
    if ((deme & at) != 0 || mask != 0) mask |= at;
  }
  return mask;
}

}  // namespace

LocationSet::LocationSet(const std::set<packed_deme>& demes) {
  for (const packed_deme deme : demes) {
    const auto number = static_cast<std::uint64_t>(deme);
    choices_.emplace_back(usedBlocks(number), number);
  }
}

bool LocationSet::contains(packed_deme location) const {
  const auto number = static_cast<std::uint64_t>(location);
  return choices_.empty() || std::any_of(choices_.begin(), choices_.end(),
                                         [number](auto choice) { return (number & choice.first) == choice.second; });
}

}  // namespace spx
