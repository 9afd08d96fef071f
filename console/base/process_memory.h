#pragma once

#include <atomic>
#include <cstddef>
#include <thread>

namespace spx::console {

/// Keeps freed memory for the next use instead of handing it back to the system: the steps of
/// loading a large studbook need tables of tens of megabytes one after the other, and fresh pages
/// cost more time than the steps themselves.
void keepFreedMemory();

/// Has the system provide the pages of a room that is filled from its beginning, beside the work of
/// filling it and a little ahead of it: what is not filled in the end costs no memory. Small rooms
/// and systems that cannot do it are left alone.
class PageProvider {
 public:
  /// @param room    addresses that nothing else is put to while this object lives
  /// @param filled  how many bytes of it are filled by now
  PageProvider(void* room, std::size_t bytes, const std::atomic<std::size_t>& filled);

 private:
  std::jthread thread_;
};

}  // namespace spx::console
