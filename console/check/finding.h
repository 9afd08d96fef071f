#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "console/check/check_codes.h"

namespace spx::console {

/// Where a record was read.
struct source_place {
  std::string file;
  std::size_t line = 0;  ///< from 1; 0: not known
};

/// A change of one cell: the field of the animals table, and its new text.
struct field_change {
  std::string animal;
  std::string field;
  std::string value;  ///< empty makes the field unknown
};

/// Something that `check` has found.
struct finding {
  CHECK check = CHECK::UNDECIDED;
  std::vector<std::string> animals;                         ///< their IDs; the animal that the finding is about
                                                            ///< comes first
  source_place place;                                       ///< of the row to look at first
  std::vector<std::pair<std::string, std::string>> values;  ///< the values that were compared: name and text
  std::string message;                                      ///< one sentence without the full stop
  std::string suggestion;                                   ///< what to do, as a sentence; empty for none
  std::vector<field_change> cure;  ///< the changes that correct it, when there is only one sensible correction

  SEVERITY severity() const { return codeOf(check).severity; }
};

/// Whether findings from before and after a change are the same: the same rule, animals and values.
bool isSameFinding(const finding& a, const finding& b);

/// The findings of `after` that `before` does not have. Linear.
std::vector<finding> addedFindings(const std::vector<finding>& before, const std::vector<finding>& after);

}  // namespace spx::console
