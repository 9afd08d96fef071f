#pragma once

namespace spx::console {

/// The exit codes of the program. Scripts rely on the numbers.
enum class ExitCode : int {
  DONE = 0,
  FAILED = 1,       ///< the operation failed; standard error says what and where
  WRONG_USAGE = 2,  ///< unknown words, options that contradict the tables
  DATA_FAULTS = 3   ///< the command succeeded, and the studbook has errors
};

}  // namespace spx::console
