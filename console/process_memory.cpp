#include "console/process_memory.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <malloc.h>
#include <system_error>
#include <unistd.h>

#include <sys/mman.h>

namespace spx::console {

void keepFreedMemory() {
  constexpr int HELD_BACK = 64 * 1024 * 1024;
  ::mallopt(M_MMAP_MAX, 0);
  ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  ::mallopt(M_TOP_PAD, HELD_BACK);
}

PageProvider::PageProvider(void* room, std::size_t bytes) {
  static constexpr std::size_t SMALL = 16 * 1024 * 1024;
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const auto begin = (reinterpret_cast<std::uintptr_t>(room) + page - 1) / page * page;
  const auto end = (reinterpret_cast<std::uintptr_t>(room) + bytes) / page * page;
  if (bytes < SMALL) return;
  const auto provide = [begin, end](const std::stop_token& stop) {
    // In pieces, so that who fills the room is never kept waiting for long.
    for (std::uintptr_t at = begin; at < end && !stop.stop_requested(); at += SMALL) {
      ::madvise(reinterpret_cast<void*>(at), std::min<std::size_t>(SMALL, end - at),
                MADV_POPULATE_WRITE);
    }
  };
  try {
    thread_ = std::jthread(provide);
  } catch (const std::system_error&) {
    thread_ = {};  // the pages come one by one, as they are filled
  }
}

}  // namespace spx::console
