#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "spx/core/deme_id.h"
#include "spx/core/enumerations.h"
#include "spx/support/field_type.h"
#include "spx/support/julian_date.h"

#include "console/base/words.h"

/// Parsers for the texts of cells. They return nothing for a text that they do not accept.
namespace spx::console {

/// yes or no in the words that key files and tables have: true, t, yes, y, 1, on and their opposites.
std::optional<bool> parseTruth(std::string_view text);

/// A code for a missing value: empty, ".", "NA" or "N/A".
bool isMissing(std::string_view text);

/// Missing, or "unknown".
bool isUnknown(std::string_view text);

/// Missing, "unknown" or "0": a parent or a place that is not known.
bool isUnknownId(std::string_view text);

/// Display names, "m", "f", "h", "u", and 1 (male), 2 (female), 0 (unknown); missing is unknown. Also
/// 1.0, 0.1 and 0.0.1 as zoos write them, the signs of Mars and Venus, and German, French and
/// Spanish words.
std::optional<SEX> parseSex(std::string_view text);

/// A day and how exactly its text gives it.
struct dated_text {
  qs_lib::day_number day = 0;
  DATE_ACCURACY accuracy = DATE_ACCURACY::UNKNOWN;
  std::uint64_t range = 0;  ///< in days to either side, of DATE_RANGE
};

/// The last day of a year or a month, or the day itself.
qs_lib::day_number lastDayOf(const dated_text& date);

/// A day, a month (its first day, accurate by month) or a year (1 January, by year); with "~" a day
/// is accurate by day, "1990s" is the middle of a range of ten years; missing is day 0 of unknown accuracy.
/// Accepts whatever readDate() understands without knowing the order of day and month.
std::optional<dated_text> parseDate(std::string_view text);

std::optional<DATE_ACCURACY> parseAccuracy(std::string_view text);

/// A kind of event; wildcards are not accepted.
std::optional<MOVE_TYPE> parseMoveType(std::string_view text);

/// Display names, "wild" and "captive"; missing is unknown.
std::optional<BIRTH_TYPE> parseOrigin(std::string_view text);

/// Display names; missing is unknown.
std::optional<REARING> parseRearing(std::string_view text);

/// A whole number of days; missing is 0.
std::optional<std::uint64_t> parseDays(std::string_view text);

/// A finite number; missing and "nan" are NaN.
template <typename Real>
std::optional<Real> parseReal(std::string_view text) {
  if (isUnknown(text) || isSameWord(text, "nan")) {
    return std::numeric_limits<Real>::quiet_NaN();
  }
  Real value = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

/// Whether a text means a deme by its identifier: numbers joined by dots. A single number above 255
/// is not an identifier but a name, such as an institution's code.
bool isDemeText(std::string_view text);

/// "2.1.2": an identifier without the levels that it does not use; empty for the root.
std::string shortDemeText(const DemeID& deme);

/// Reads an identifier strictly: up to eight numbers from 1 to 255, after which zeros may follow.
/// Returns nothing for one that does not survive packing, since such a deme could not be found again.
std::optional<DemeID> parseDeme(std::string_view text);

/// Infers the type of a user-defined field from its values.
class TypeGuess {
 public:
  void add(std::string_view value);
  /// INTEGER or REAL when all values that are not missing are such; else TEXT. Numbers with leading
  /// zeros are text: they are identifiers, and would lose their zeros.
  qs_lib::FIELD_TYPE type() const { return met_ ? type_ : qs_lib::FIELD_TYPE::TEXT; }

  /// Whether any value was not missing.
  bool hasValues() const { return met_; }

 private:
  qs_lib::FIELD_TYPE type_ = qs_lib::FIELD_TYPE::INTEGER;
  bool met_ = false;
};

}  // namespace spx::console
