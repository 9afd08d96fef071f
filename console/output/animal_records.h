#pragma once

#include <iosfwd>

#include "spx/core/master_data.h"

#include "console/output/output_format.h"

/// Animals as records for scripts. The names are those of the columns of an animals table, so that
/// a listing can be read again.
namespace spx::console {

/// Writes the animals whose `print` flag is set, in the order of the index: those of the text
/// listing, in its order.
void writeAnimals(std::ostream& out, OUTPUT_FORMAT format);

/// Writes one animal with the names of its places and all its events.
void writeCard(std::ostream& out, OUTPUT_FORMAT format, const master_data& animal);

}  // namespace spx::console
