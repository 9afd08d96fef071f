#pragma once

#include <string>

#include "spx/support/configuration.h"
#include "spx/support/export.h"

namespace spx {

class DataFilter;

/// The key file of a view, `name`.view in the directory. Only load() and save() access the file.
SPX_EXPORT qs_lib::Configuration viewFile(const std::string& directory, const std::string& name);

/// Sets the 31 entries that DataFilter::save() stores; no file is touched. Other entries stay.
SPX_EXPORT void writeView(const DataFilter& view, qs_lib::Configuration& file);

/// Sets the view from the entries that DataFilter::load() reads, in the same order and with the same
/// conversions; no file is touched. A malformed integer raises std::invalid_argument or
/// std::out_of_range, and the settings read before it are in place.
SPX_EXPORT void readView(DataFilter& view, const qs_lib::Configuration& file);

}  // namespace spx
