#include "spx/version.h"

namespace spx {
namespace {
[[gnu::used]] constexpr char VERSION_RECORD[] =
    "PROGRAM:spx_base." SPX_VERSION_MAJOR "  PROJECT:spx-" SPX_VERSION_MINOR;
}

const char* libraryVersion() {
  return SPX_VERSION;
}

const char* versionRecord() {
  return VERSION_RECORD;
}
}  // namespace spx
