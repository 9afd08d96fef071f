#pragma once

#include <string>
#include <vector>

namespace spx::console {

/// Fills the inbreeding, the generation numbers and the founder lineages of the records in use, for commands that show
/// them or choose by them. Values that the tables give are kept. Does nothing when every record has its numbers.
/// While animals are their own ancestors nothing can be computed: a note on standard error says so.
void computeRecordGenetics();

/// "animals are their own ancestors: 1, whose parent is 3, whose parent is 1".
/// @param ids  of one cycle, see StudbookPedigree::cycle
std::string cycleText(const std::vector<std::string>& ids);

}  // namespace spx::console
