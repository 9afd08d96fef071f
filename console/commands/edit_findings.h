#pragma once

#include <string>
#include <vector>

#include "console/check/finding.h"
#include "console/edits/studbook_edit.h"

namespace spx::console {

/// What `check` finds in the studbook as an edit has left it up to now. Loads it, without a word. Throws
/// Failure when it cannot be loaded.
std::vector<finding> findingsOf(StudbookEdit& edit);

/// How an edit changes what `check` finds.
class FindingChanges {
 public:
  /// @param before  those of the studbook before the edit
  FindingChanges(StudbookEdit& edit, std::vector<finding> before, const std::vector<finding>& after);

  /// Throws Failure, with the reasons, when the edit makes a record that cannot be true.
  void refuseImpossible() const;

  /// A line for each finding that is cured or new.
  std::vector<std::string> lines() const;

 private:
  std::vector<finding> added_;
  std::vector<finding> cured_;
};

}  // namespace spx::console
