#include "console/base/process_memory.h"

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
  static constexpr std::size_t PIECE = std::size_t{4} << 20;
  static constexpr std::size_t AHEAD = 8 * PIECE;
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(room) % page) % page;
  if (bytes < AHEAD) {
    return;
  }
  char* const begin = static_cast<char*>(room) + before;
  const std::size_t whole = (bytes - before) / page * page;
  const auto provide = [begin, whole, &filled](const std::stop_token& stop) {
    for (std::size_t at = 0; at < whole && !stop.stop_requested();) {
      if (at > filled.load(std::memory_order_relaxed) + AHEAD) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        continue;
      }
      ::madvise(begin + at, std::min(PIECE, whole - at), MADV_POPULATE_WRITE);
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
