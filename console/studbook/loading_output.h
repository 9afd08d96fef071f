#pragma once

#include <cstddef>
#include <streambuf>

namespace spx::console {

/// While it lives, nothing that the library writes reaches standard output, which is for results:
/// progress goes to standard error if that is a terminal and nowhere otherwise, the warnings of
/// parents without a record are counted, and all other texts go to standard error.
class LoadingOutput {
 public:
  LoadingOutput();
  ~LoadingOutput();
  LoadingOutput(const LoadingOutput&) = delete;
  LoadingOutput& operator=(const LoadingOutput&) = delete;

  /// How often a parent was sought that has no record.
  std::size_t parentWarnings() const { return parent_warnings_; }

 private:
  std::streambuf* output_;
  bool verbose_;
  std::size_t parent_warnings_ = 0;
};

}  // namespace spx::console
