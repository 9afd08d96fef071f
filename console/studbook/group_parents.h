#pragma once

#include <string>
#include <vector>

#include "spx/core/multi_parent.h"

/// Groups of possible parents that a table lists.
namespace spx::console {

/// What the parent columns of the records say of groups.
struct group_parents {
  std::vector<multi_parent> listed;   ///< by ID, each with two candidates or more
  std::vector<std::string> unlisted;  ///< groups that name animals without a record
};

/// Reads "MULT 12/15", "HERD 3/4/9": a group by its name, then the IDs of its candidates with "/" between them. Each is
/// as likely as the others; one that stands there twice counts twice. A group with one name or none, such as "MULT3" or
/// "HERD 1", lists nobody; nor does one of which an ID has no record. Reads Animals; linear.
group_parents groupParents();

}  // namespace spx::console
