#pragma once

#include "console/studbook_files.h"

namespace spx::console {

/// Loads a studbook from its tables into the process-wide objects: animals with their events,
/// demes, programmes, taxa and user-defined fields; then resolves and checks the parents, indexes,
/// keys and builds the pedigree.
///
/// Whatever was loaded before is dropped. Nothing reaches standard output; standard error tells how
/// many pseudo individuals and pseudo founders there are.
///
/// Throws Failure when a table has faults, with the text of the faults, and UsageError; either way
/// the objects are empty afterwards.
void loadStudbook(const studbook_files& files);

/// Empties the process-wide objects that loadStudbook fills.
void dropStudbook();

}  // namespace spx::console
