#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace spx::console {

/// The limits of a function that runs in a separate process.
struct run_limits {
  std::size_t memory;   ///< bytes beyond what this process has now
  std::size_t seconds;  ///< of processor time
  std::size_t output;   ///< bytes
};

/// Runs a function in a separate process, so that input on which it crashes or never ends cannot
/// harm this process. The function has no effect on this process except for its output.
/// @param work  receives a function that accepts the output in parts; an exception ends the run
/// @return the whole output
/// Throws Failure with the text of what was thrown, or "is damaged, or too large to be read" when
/// the function crashed or went beyond a limit.
std::string runIsolated(const run_limits& limits,
                        const std::function<void(const std::function<void(std::string_view)>&)>& work);

}  // namespace spx::console
