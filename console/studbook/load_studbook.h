#pragma once

#include "console/studbook/source_files.h"
#include "console/studbook/studbook_tables.h"
#include "console/tables/loading_notes.h"

namespace spx::console {

/// Loads a studbook from its tables or its studbook file into the process-wide objects: animals
/// with their events, demes, programmes, taxa and user-defined fields; then resolves and checks the
/// parents, indexes, keys and builds the pedigree.
///
/// Whatever was loaded before is dropped. Nothing reaches standard output; standard error names the
/// animals of tables that count as pseudo individuals and the parents without a record.
///
/// Throws Failure when a table has faults, with the text of the faults, and UsageError; either way
/// the objects are empty afterwards.
/// @return the lines of the rows, and other findings
loading_notes loadStudbook(const studbook_files& files);

/// The same from open tables, which are closed once they have been read.
/// @param refused  what does not come about because of faults
loading_notes loadStudbook(studbook_tables tables, const char* refused = "nothing was loaded");

/// Empties the process-wide objects that loadStudbook fills.
void dropStudbook();

}  // namespace spx::console
