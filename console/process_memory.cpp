#include "console/process_memory.h"

#include <limits>
#include <malloc.h>

namespace spx::console {

void keepFreedMemory() {
  constexpr int HELD_BACK = 64 * 1024 * 1024;
  ::mallopt(M_MMAP_MAX, 0);
  ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  ::mallopt(M_TOP_PAD, HELD_BACK);
}

}  // namespace spx::console
