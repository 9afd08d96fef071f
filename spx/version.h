#pragma once

#include "spx/support/export.h"

namespace spx {
/// The version of the library as "major.minor.patch". The text lives as long as the library.
SPX_EXPORT const char* libraryVersion();

/// The version record, which identifies a built file: "PROGRAM:spx_base.1  PROJECT:spx-1.1".
/// The library file contains this text unchanged, so `strings` finds it. Lives as long as the library.
SPX_EXPORT const char* versionRecord();
}  // namespace spx
