#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "console/check/finding.h"
#include "console/output/output_format.h"

namespace spx::console {

/// How many findings there are of each severity.
struct finding_counts {
  std::size_t errors = 0;
  std::size_t warnings = 0;
  std::size_t notes = 0;

  explicit finding_counts(const std::vector<finding>& findings);

  /// "2 errors, 1 warning"; "nothing" for none.
  std::string text() const;
};

/// Lists findings for people, by rules, in their order: the first ten of each rule, or all. The findings of a rule
/// are adjacent. The last line has the totals.
/// @param animals  how many animals were checked
/// @param width    columns that a line may take
void listFindings(std::ostream& out, const std::vector<finding>& findings, bool all, std::size_t animals,
                  std::size_t width = 80);

/// Writes findings for scripts: severity, code, animals, file, line, message, suggestion, values, fix. In CSV a cell
/// holds all animals, values or fixes, separated by "; ".
void writeFindings(std::ostream& out, OUTPUT_FORMAT format, const std::vector<finding>& findings);

}  // namespace spx::console
