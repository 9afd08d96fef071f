#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace spx::console {

/// What the number format of a cell says about its number.
enum class NUMBER_FORM : std::uint8_t {
  NUMBER,
  DAY,     ///< a date that is shown with its day, or without its year
  MONTH,   ///< a date that is shown as month and year
  YEAR,    ///< a date of which only the year is shown
  PADDED,  ///< a whole number that is shown with leading zeros
};

struct number_format {
  NUMBER_FORM form = NUMBER_FORM::NUMBER;
  std::size_t digits = 0;  ///< of PADDED
};

/// The meaning of a format code such as `dd/mm/yyyy`, `[$-409]mmm yyyy` or `0000`. Literal text,
/// colours and locales in it are ignored, and only the first of several sections counts.
number_format readNumberFormat(std::string_view code);

/// The meaning of a format that spreadsheets know by its number alone; NUMBER for all others.
number_format builtInNumberFormat(std::size_t identifier);

/// The text of a cell that holds a number. Dates become YYYY-MM-DD, with Thh:mm:ss where the number
/// has a time of day. A date that is shown without its day becomes YYYY-MM (or YYYY) when it is the
/// first of its month (or year): spreadsheets store "May 1998" as the first of May.
/// @param origin_is_1904  how the workbook counts days; otherwise day 1 is 1900-01-01, and there is
///                        a 29 February 1900, as spreadsheets count
std::string numberText(double number, const number_format& format, bool origin_is_1904);

/// A date that is written in full, without its time of day at midnight, and without what the format does not show when
/// that is the first day.
/// @param date  YYYY-MM-DD, also with Thh:mm:ss
std::string shortenedDate(std::string date, NUMBER_FORM form);

}  // namespace spx::console
