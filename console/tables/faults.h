#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace spx::console {

/// One thing in a table that cannot be accepted. Parts that do not apply are empty or 0.
struct fault {
  std::string file;
  std::size_t line = 0;
  std::string title;   ///< of the column
  std::string animal;  ///< the studbook ID in the row, or what else names it
  std::string reason;
  const char* row_kind = "animal";  ///< what the rows of the table are
};

/// Collects the faults of all tables, so that they are reported together.
class Faults {
 public:
  static constexpr std::size_t SHOWN = 20;

  void add(fault found);
  bool empty() const { return count_ == 0; }
  std::size_t count() const { return count_; }

  /// The first faults, one per line, and the number of the remaining ones.
  std::string text() const;

 private:
  std::vector<fault> shown_;
  std::size_t count_ = 0;
};

}  // namespace spx::console
