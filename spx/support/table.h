#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "spx/support/export.h"

namespace qs_lib {
/// The columns of a report table; empty until they are declared.
class SPX_EXPORT Table {
 public:
  /// @{
  /// The names of the columns, and whether there are any.
  void setColumns(std::vector<std::string> names) { columns_ = std::move(names); }
  const std::vector<std::string>& columns() const { return columns_; }
  bool isDeclared() const { return !columns_.empty(); }
  /// @}

 private:
  std::vector<std::string> columns_;
};
}  // namespace qs_lib
