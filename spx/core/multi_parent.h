#pragma once

#include <string>
#include <vector>

#include "spx/support/export.h"

namespace spx {

/// A group parent and the animals that it may stand for.
struct multi_parent {
  std::string id;                       ///< the group's identifier, such as "MULT3"
  std::vector<std::string> candidates;  ///< studbook IDs
};

/// The group parents of the studbook, filled and read by the host.
extern SPX_EXPORT std::vector<multi_parent> parent_list;

}  // namespace spx
