#pragma once

#include "console/studbook/studbook_files.h"

namespace spx::console {

/// The same files with a directory replaced by the tables in it: animals.csv, and events.csv,
/// locations.csv and programs.csv where they exist and no other files are given for them. When
/// `animals` names a file, other tables in its directory are not used. Throws Failure when the
/// directory has no animals.csv.
studbook_files resolveFiles(studbook_files files);

}  // namespace spx::console
