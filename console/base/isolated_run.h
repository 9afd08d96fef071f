#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace spx::console {

/// What a function that runs apart may use.
struct run_limits {
  std::size_t memory;   ///< bytes beyond what this process has now
  std::size_t seconds;  ///< of the processor
  std::size_t output;   ///< bytes
};

/// Runs a function in a process of its own, so that input which crashes it, or which it would never
/// be done with, cannot harm this one. Of the function's effects only its output comes back.
/// @param work  gets a function that takes the output in parts; what it throws ends the run
/// @return the whole output
/// Throws Failure with the text of what was thrown, or "is damaged, or too large to be read" when
/// the function crashed or went beyond a limit.
std::string runIsolated(const run_limits& limits,
                        const std::function<void(const std::function<void(std::string_view)>&)>& work);

}  // namespace spx::console
