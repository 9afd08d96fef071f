#include "spx/version.h"

namespace spx {
namespace {
[[gnu::used]] constexpr char VERSION_RECORD[] = "PROGRAM:spx_base.1  PROJECT:spx-1.1";
}

const char* libraryVersion() {
  return SPX_VERSION;
}

const char* versionRecord() {
  return VERSION_RECORD;
}
}  // namespace spx
