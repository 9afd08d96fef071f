#pragma once

#include <cstddef>
#include <thread>

namespace spx::console {

/// Keeps freed memory for the next use instead of handing it back to the system: the steps of
/// loading a large studbook need tables of tens of megabytes one after the other, and fresh pages
/// cost more time than the steps themselves.
void keepFreedMemory();

/// Has the system provide the pages of a room that is about to be filled, beside the work of
/// filling it. Small rooms and systems that cannot do it are left alone.
class PageProvider {
 public:
  /// @param room  must stay until this object is gone
  PageProvider(void* room, std::size_t bytes);

 private:
  std::jthread thread_;
};

}  // namespace spx::console
