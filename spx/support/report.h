#pragma once

#include <string>

#include "spx/support/export.h"
#include "spx/support/write_file.h"

namespace qs_lib {
/// The base of the report files: a file to write to, and a title.
class SPX_EXPORT Report : public WriteFile {
 public:
  Report();
  ~Report() override;

  /// @{
  /// The title of the report; empty at first.
  void setTitle(const std::string& title) { title_ = title; }
  const std::string& getTitle() const { return title_; }
  /// @}

 private:
  std::string title_;
};
}  // namespace qs_lib
