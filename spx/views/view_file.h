#pragma once

#include <string>

#include "spx/support/configuration.h"
#include "spx/support/export.h"

namespace spx {

/// The key file of a view, `name`.view in the directory. Nothing is read or written before load()
/// or save().
SPX_EXPORT qs_lib::Configuration viewFile(const std::string& directory, const std::string& name);

}  // namespace spx
