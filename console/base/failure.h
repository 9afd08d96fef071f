#pragma once

#include <stdexcept>

namespace spx::console {

/// An operation that cannot be done. The text says what and where.
class Failure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A command line that cannot be obeyed. The text says which word is wrong and what would do.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace spx::console
