#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace spx::console {

/// How bad a finding is: an error cannot be true, a warning is unlikely, a note is worth knowing.
enum class SEVERITY : std::uint8_t { ERROR, WARNING, NOTE };

/// The rules of `check`, in the order in which findings are shown: errors, warnings, notes.
enum class CHECK : std::uint8_t {
  DUPLICATE_ID,
  PADDED_ID,
  LITTER_TWICE,
  PARENT_SEX,
  PARENT_BOTH_SEXES,
  OWN_PARENT,
  PARENT_CYCLE,
  FUTURE_DATE,
  DEATH_BEFORE_BIRTH,
  BORN_BEFORE_PARENT,
  BORN_AFTER_DAM_DIED,
  CONCEIVED_AFTER_SIRE_DIED,
  EVENT_BEFORE_BIRTH,
  EVENT_AFTER_DEATH,
  DAM_IN_TWO_PLACES,
  PLACEHOLDER_ID,
  MISSING_PARENT,
  PARENT_TOO_YOUNG,
  PARENT_TOO_OLD,
  PARENTS_APART,
  LITTER_INTERVAL,
  NEAR_DUPLICATE,
  EVENT_AFTER_LOSS,
  OVERLAPPING_STAYS,
  SIMILAR_LOCATIONS,
  PARENT_SEX_UNKNOWN,
  UNDECIDED,
  COUNT  ///< the number of rules
};

/// The description of a rule for people and scripts.
struct check_code {
  CHECK check;
  const char* code;  ///< for scripts and options; never changes
  SEVERITY severity;
  const char* title;        ///< above the findings of the rule
  const char* explanation;  ///< what the rule compares
  const char* example;      ///< the message of a finding
};

/// All rules, in their order.
std::span<const check_code> checkCodes();

const check_code& codeOf(CHECK check);

/// The rule with that code.
std::optional<CHECK> checkOfCode(std::string_view code);

/// "error", "warning" or "note".
const char* severityName(SEVERITY severity);

}  // namespace spx::console
