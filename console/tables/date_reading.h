#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace spx::console {

/// The order of day and month in dates such as 04/05/1998.
enum class DATE_ORDER : std::uint8_t { UNKNOWN, DAY_FIRST, MONTH_FIRST };

/// How a text gives a date.
enum class DATE_FORM : std::uint8_t {
  PLAIN,        ///< YYYY-MM-DD, YYYYMMDD, YYYY-MM, YYYY; with a time of day; or nothing
  YEAR_FIRST,   ///< 1998/07/12, 1998.7
  DAY_FIRST,    ///< 25/12/1998
  MONTH_FIRST,  ///< 12/25/1998
  NAMED_MONTH,  ///< 12 May 1998, May 1998
  MONTH_YEAR,   ///< 05/1998
  PARTLY_ZERO,  ///< 1998-07-00, 00/00/1998
  ROUGH,        ///< ~1990, ca. May 1998
  DECADE,       ///< 1990s
  SERIAL,       ///< 35927, the day number of a spreadsheet
  UNKNOWN,      ///< ?, unknown in one of the languages

  AMBIGUOUS,   ///< 04/05/1998 while the order is not known
  YEAR_ZERO,   ///< 0000-00-00
  SHORT_YEAR,  ///< 12/05/98
  NOT_A_DATE,
};

/// A date as a text that parseDate() accepts without knowing the order of day and month.
struct date_reading {
  DATE_FORM form = DATE_FORM::NOT_A_DATE;
  std::string text;  ///< YYYY-MM-DD, YYYY-MM, YYYY, after "~" when rough; "1990s"; empty for no date
};

/// Reads a date of a table. Month names may be English, German, French or Spanish, in full or
/// shortened. A text that is not a date (forms from AMBIGUOUS on) is returned unchanged.
/// @param order  of the column: decides 04/05/1998 and refuses what contradicts it
date_reading readDate(std::string_view text, DATE_ORDER order);

/// The order that a text such as 25/12/1998 proves; UNKNOWN when it proves nothing.
DATE_ORDER provenOrder(std::string_view text);

/// Why a text is not a date, for messages: `"12/05/98" has a year of two digits; write all four`.
std::string dateFault(std::string_view text);

}  // namespace spx::console
