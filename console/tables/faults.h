#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace spx::console {

/// One thing in a table that cannot be taken. Parts that do not apply are empty or 0.
struct fault {
  std::string file;
  std::size_t line = 0;
  std::string title;   ///< of the column
  std::string animal;  ///< the studbook ID in the row, or what else names it
  std::string reason;
  const char* row_kind = "animal";  ///< what the rows of the table are
};

/// Collects what is wrong with the tables, so that all of it is told at once.
class Faults {
 public:
  static constexpr std::size_t SHOWN = 20;

  void add(fault found);
  bool empty() const { return count_ == 0; }
  std::size_t count() const { return count_; }

  /// The first faults, a line each, and how many there are more.
  std::string text() const;

 private:
  std::vector<fault> shown_;
  std::size_t count_ = 0;
};

}  // namespace spx::console
