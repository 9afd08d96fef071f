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
  std::vector<std::string> animals;                         ///< their IDs; the one that it is about comes first
  source_place place;                                       ///< of the row to look at first
  std::vector<std::pair<std::string, std::string>> values;  ///< what was compared: name and text
  std::string message;                                      ///< one sentence without its full stop
  std::string suggestion;                                   ///< what to do, as a sentence; empty for none
  std::vector<field_change> cure;  ///< the changes that mend it, where only one way is sensible

  SEVERITY severity() const { return codeOf(check).severity; }
};

/// Whether two findings are the same one, before and after a change: the same rule, animals and values.
bool isSameFinding(const finding& a, const finding& b);

/// The findings of `after` that `before` does not have. Linear.
std::vector<finding> addedFindings(const std::vector<finding>& before, const std::vector<finding>& after);

}  // namespace spx::console
