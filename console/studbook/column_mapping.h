#pragma once

#include <string>

#include "console/studbook/source_files.h"
#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// A key file that keeps how tables were understood: which column holds which field,
/// and the order of day and month, the footer, the sheet and the encoding where they were given.

/// Adds the settings of the file to those of the command line, which take precedence. Throws
/// Failure when it is not a mapping file.
void readMapping(const std::string& path, studbook_files& files);

/// Writes the file. Throws Failure.
/// @param tables  those that were read, with their notes
void writeMapping(const std::string& path, const studbook_tables& tables, const reading_options& reading);

}  // namespace spx::console
