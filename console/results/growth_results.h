#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "console/output/table.h"
#include "console/results/demography_notes.h"

namespace spx::console {

/// How growth is computed.
struct growth_choice {
  std::string line = "female";        ///< whose births and deaths: female, male or both
  std::string parent_age = "middle";  ///< of the class: middle or start
  std::size_t runs = 1000;            ///< of the bootstrap; 0 for none
  std::uint32_t seed = 1;
};

/// R0, generation time, r and lambda of the view with their intervals: a record.
Table growthTable(const growth_choice& options, const time_unit& unit);

/// The options of a projection.
struct projection_choice {
  int years = 20;
  std::size_t runs = 1000;
  std::uint32_t seed = 1;
  std::optional<double> fewer_than = {};  ///< half of the animals when it is not given
};

/// The expected numbers of animals after the view's end. Throws UsageError when the view is of one sex only.
Table projectionTable(const projection_choice& options);

}  // namespace spx::console
