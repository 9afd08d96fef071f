#pragma once

#include "spx/support/export.h"

namespace spx {
/// The version of the library as "major.minor.patch". The text lives as long as the library.
SPX_EXPORT const char* libraryVersion();

/// The version record, by which a built file can be told: "PROGRAM:spx_base.1  PROJECT:spx-1.1".
/// It stands in the file as it is here, so `strings` finds it. Lives as long as the library.
SPX_EXPORT const char* versionRecord();
}  // namespace spx
