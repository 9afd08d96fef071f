#pragma once

#include <string>

namespace spx::console {

/// The moment that a keeper types, such as 2026-03-01 or "2026-03-01 14:30", in the form of the journal: in
/// UTC, YYYY-MM-DDThh:mm:ssZ. What is typed is local time unless it ends in Z. Throws UsageError.
/// @param option       the option that error messages name
/// @param end_of_day   whether a day without a time means its last second, else its first
std::string journalTime(const std::string& option, const std::string& typed, bool end_of_day);

/// A moment of the journal in local time, YYYY-MM-DD hh:mm; empty for the empty text.
std::string localTime(const std::string& journal_time);

}  // namespace spx::console
