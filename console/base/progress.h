#pragma once

#include <string>
#include <thread>

namespace spx::console {

/// Shows on standard error that something takes long: a line that appears after a second, counts the seconds, and
/// is erased when this object is destroyed. Shows nothing where standard error is not a terminal.
class Progress {
 public:
  /// @param what  such as "Loading the studbook"
  explicit Progress(std::string what);

 private:
  std::jthread thread_;
};

}  // namespace spx::console
