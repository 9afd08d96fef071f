#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A studbook made from the lines of an input. The parts of a line are separated by TAB and hold
/// escapes.
///
///     view<TAB>end_date origin accuracy sex gestation low_age high_age
///     deme<TAB>3.1<TAB>name
///     taxon<TAB>name
///     move<TAB>date location event        (of the last animal)
///     anything<TAB>sire<TAB>dam<TAB>numbers<TAB>taxon<TAB>user value   an animal of that ID
///
/// Numbers are separated by blanks, in the order sex, birth date, death date, birth accuracy,
/// death event, death accuracy, birth range, origin, inbreeding, generation; those left out are 0.
namespace spx::fuzz {

/// Empties all process-wide state and fills it again, through the calls that a host makes.
void makeStudbook(std::string_view text);

/// The steps of a host from validation to the flags of the breeders.
void deriveStudbook();

}  // namespace spx::fuzz
