#include "console/process_memory.h"

#include <algorithm>
#include <chrono>
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

PageProvider::PageProvider(void* room, std::size_t bytes, const std::atomic<std::size_t>& filled) {
  static constexpr std::size_t PIECE = 4 * 1024 * 1024;
  static constexpr std::size_t AHEAD = 8 * PIECE;
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const auto begin = (reinterpret_cast<std::uintptr_t>(room) + page - 1) / page * page;
  const auto end = (reinterpret_cast<std::uintptr_t>(room) + bytes) / page * page;
  if (bytes < AHEAD) return;
  const auto provide = [begin, end, &filled](const std::stop_token& stop) {
    for (std::uintptr_t at = begin; at < end && !stop.stop_requested();) {
      if (at - begin > filled.load(std::memory_order_relaxed) + AHEAD) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        continue;
      }
      ::madvise(reinterpret_cast<void*>(at), std::min<std::size_t>(PIECE, end - at),
                MADV_POPULATE_WRITE);
      at += PIECE;
    }
  };
  try {
    thread_ = std::jthread(provide);
  } catch (const std::system_error&) {
    thread_ = {};  // the pages come one by one, as they are filled
  }
}

}  // namespace spx::console
