#pragma once

#include <cstdint>
#include <string>

#include "spx/core/enumerations.h"
#include "spx/support/export.h"
#include "spx/support/julian_date.h"

/// @file
/// Dates that are not known exactly, and spans of days, as people read them.
namespace spx {

/// @{
/// The units of convertDays() and ageError(), in days.
inline constexpr double DAYS_PER_WEEK = 7.0;
inline constexpr double DAYS_PER_MONTH = 30.6001;
inline constexpr double DAYS_PER_YEAR = 365.25;
/// @}

/// The text of an estimated date.
///
/// By accuracy: accurate gives the full date; by day "~" and the full date; by month "~", the short
/// month name, the format's separator and the year; by year "~" and the year; everything else
/// "unknown". A date known to the week is "unknown" too; kept on purpose. A date range has "+" in
/// place of "~" and the form for its range: 1 to 29 days by day, 30 to 364 by month, more than 365
/// by year. Ranges of 0 and of exactly 365 give the full date alone; kept on purpose.
/// By month and by year show the 16-bit year of qs_lib::julianToDate(), padded with blanks.
///
/// @param date      in Julian milliseconds; 0 gives the empty text whatever the accuracy
/// @param range     in days; read only for DATE_ACCURACY::DATE_RANGE
/// @param format    order and separator of the full date
SPX_EXPORT std::string formatEstDate(qs_lib::julian_ms date, DATE_ACCURACY accuracy, std::uint64_t range,
                                     qs_lib::date_time_set format);

/// The same in the process-wide format.
SPX_EXPORT std::string formatEstDate(qs_lib::julian_ms date, DATE_ACCURACY accuracy, std::uint64_t range);

/// A span of days with one decimal and the unit that suits it: " days" below 7, " weeks"
/// below 30.6001, " months" below 365.25, otherwise " years". The limits apply to the span before
/// it is rounded, so 6.99 gives "7.0 days". NaN gives "nan years", a negative span days.
SPX_EXPORT std::string convertDays(double days);

/// The relative error of an age: the length of the accuracy's unit divided by the age.
/// @param age  in days; 0 gives infinity for the accuracies from by day to by year, NaN gives NaN
/// @return 1 for every other accuracy, on purpose accurate ones included, without any division
SPX_EXPORT double ageError(double age, DATE_ACCURACY accuracy);

}  // namespace spx
