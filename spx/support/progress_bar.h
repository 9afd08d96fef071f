#pragma once

#include <cstdint>
#include <string>

#include "spx/support/export.h"
#include "spx/support/process_clock.h"

namespace qs_lib {
/// Shows on standard output how far a loop of known length has come. Lives on the stack of the
/// loop; shows no bar while isVerbose() is false.
///
///     ProgressBar bar(animals.size(), "Tracing parents");
///     for (auto& animal : animals) { trace(animal); bar.progress(); }
class SPX_EXPORT ProgressBar {
 public:
  /// Draws title and scale, then starts the clock (drawing is not timed).
  /// @param total  steps that complete the bar; with 0 it never completes by itself
  /// @param title  shown in brackets above the scale; empty shows none
  ProgressBar(std::uint64_t total, const std::string& title);

  /// Counts one step; writes at most one mark, due at every second percent, and the time used
  /// with the last step.
  /// @return false, with nothing written, once the bar is finished
  bool progress();

  /// Ends the bar with the time used; a second call does nothing.
  void finished();

  /// Stops early: ends the line (also when not verbose) and shows no time. Steps still count.
  void end();

  /// Draws title, scale and ruler.
  void display() const;

 private:
  process_timer timer_;
  std::uint64_t total_ = 0;
  std::uint64_t done_ = 0;
  std::uint16_t next_ = 0;  ///< the percentage at which the next mark is due
  bool complete_ = false;
  std::string title_;
};
}  // namespace qs_lib
