#pragma once

#include <streambuf>

namespace spx::console {

/// While it lives, nothing that the library writes reaches standard output, which is for results:
/// progress goes to standard error if that is a terminal and nowhere otherwise. Displayed texts are
/// dropped: they are the warnings of parents without a record, which Animals.missing_parents holds.
class LoadingOutput {
 public:
  LoadingOutput();
  ~LoadingOutput();
  LoadingOutput(const LoadingOutput&) = delete;
  LoadingOutput& operator=(const LoadingOutput&) = delete;

 private:
  std::streambuf* output_;
  bool verbose_;
};

}  // namespace spx::console
