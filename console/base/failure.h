#pragma once

#include <stdexcept>

namespace spx::console {

/// Thrown when an operation fails. The text says what went wrong and where.
class Failure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Thrown for a wrong command line. The text says which word is wrong and what is accepted.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace spx::console
