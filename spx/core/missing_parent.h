#pragma once

#include <string>
#include <vector>

#include "spx/core/master_data.h"

namespace spx {

/// A parent that has no record, as AnimalData::validate found it.
struct missing_parent {
  std::string id;                   ///< as its offspring name it
  SEX sex;                          ///< by the role in which it was met first
  position stand_in;                ///< the pseudo individual that takes its place
  std::vector<position> offspring;  ///< the records that name it, in store order
};

}  // namespace spx
