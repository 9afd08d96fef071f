#pragma once

#include <string>
#include <vector>

#include "spx/support/export.h"

namespace qs_lib {
/// Creates one directory; "~" is replaced, a relative path counts from the working directory.
/// @return whether the directory exists afterwards; true also when it existed before
SPX_EXPORT bool createDir(const std::string& path);

/// Appends the files in the directory that carry the extension, sorted byte by byte.
/// @param directory   "~" is replaced; empty for the working directory
/// @param extension   without its dot
/// @param base_names  true lists names without the extension, false with it
/// @return false, with the list unchanged, when the directory cannot be read
SPX_EXPORT bool listDir(const std::string& directory, const std::string& extension, bool base_names,
                        std::vector<std::string>& names);
}  // namespace qs_lib
