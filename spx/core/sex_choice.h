#pragma once

#include "spx/core/enumerations.h"
#include "spx/support/export.h"

namespace spx {

/// The sex of possible partners: male for female, female for male. For every other sex it is ALL,
/// on purpose: an animal of unclear sex can have partners of every sex.
SPX_EXPORT SEX oppositeSex(SEX sex);

/// Male and female in turn; the first call of a process gives male. The turn is never reset.
SPX_EXPORT SEX getEqualSex();

/// Draws a sex from the process-wide random source.
/// @param probability  that the animal is male: 0 and below, and NaN, always give female, 1 and
///                     above always male. Two random words are drawn for every probability, so
///                     that a seeded sequence does not depend on it.
SPX_EXPORT SEX getRandomSex(double probability);

}  // namespace spx
