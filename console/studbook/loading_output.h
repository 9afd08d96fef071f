#pragma once

#include <streambuf>
#include <string>

#include "console/base/progress.h"

namespace spx::console {

/// While it lives, nothing that the library writes reaches standard output, which is for results: its progress bars
/// are not drawn, since the console shows its own progress. Displayed texts are dropped: they are the warnings of
/// parents without a record, which Animals.missing_parents holds.
class LoadingOutput {
 public:
  /// @param what  text of the progress line, shown at a terminal when loading takes long
  explicit LoadingOutput(const std::string& what = "Loading the studbook");
  ~LoadingOutput();
  LoadingOutput(const LoadingOutput&) = delete;
  LoadingOutput& operator=(const LoadingOutput&) = delete;

 private:
  std::streambuf* output_;
  bool verbose_;
  Progress progress_;
};

}  // namespace spx::console
