#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>

#include "spx/support/write_file.h"

#include "console/output/pager.h"

namespace CLI {
class App;
}

namespace spx::console {

/// The destination of a command's result.
struct result_options {
  std::string file;        ///< `-o`; empty or "-": standard output
  bool overwrite = false;  ///< an existing file may be replaced
  bool no_pager = false;
};

/// Adds `-o FILE`, `--overwrite` and `--no-pager`.
void addResultOptions(CLI::App& app, result_options& options);

/// The stream of a result: a file, which gets its name only when it is complete; a pager, for people at a
/// terminal; or standard output.
///
///     ResultOutput output(options, true);
///     print(output.stream());
///     output.finish();
class ResultOutput {
 public:
  /// Opens it. Throws Failure when the file exists already and may not be replaced, or cannot be written.
  /// @param for_people  long output goes through the pager at a terminal
  ResultOutput(const result_options& options, bool for_people);
  ResultOutput(const ResultOutput&) = delete;
  ResultOutput& operator=(const ResultOutput&) = delete;

  std::ostream& stream();

  /// The number of columns that a line may take: those of the terminal, 80 elsewhere.
  std::size_t width() const { return width_; }

  /// Puts the file in its place, or waits for the reader to leave the pager. Throws Failure when anything was lost.
  void finish();

 private:
  std::string name_;
  qs_lib::WriteFile file_;
  std::unique_ptr<Pager> pager_;
  std::size_t width_ = 80;
};

/// Throws Failure when the path exists and may not be replaced.
void refuseToOverwrite(const std::string& path, bool overwrite);

}  // namespace spx::console
