#pragma once

#include <string>
#include <vector>

#include "console/check/finding.h"
#include "console/edits/studbook_edit.h"

namespace spx::console {

/// What `check` finds in the studbook in its state within the edit. Loads it without messages. Throws
/// Failure when it cannot be loaded.
std::vector<finding> findingsOf(StudbookEdit& edit);

/// The findings of `check` that an edit adds or cures.
class FindingChanges {
 public:
  /// @param before  the findings before the edit
  FindingChanges(StudbookEdit& edit, std::vector<finding> before, const std::vector<finding>& after);

  /// Throws Failure, with the reasons, when the edit leads to a record that cannot be true.
  void refuseImpossible() const;

  /// A line for each finding that is cured or new.
  std::vector<std::string> lines() const;

 private:
  std::vector<finding> added_;
  std::vector<finding> cured_;
};

}  // namespace spx::console
