#pragma once

#include <string>
#include <vector>

#include "spx/core/identifiers.h"
#include "spx/core/master_data.h"
#include "spx/support/export.h"
#include "spx/support/julian_date.h"

/// @file
/// Tests of one record. They change nothing; those named after the view read View, MetaPop and
/// user_field_list. Dates are day numbers.
///
/// Spans of days are unsigned 32-bit differences, on purpose: a negative difference wraps to a huge
/// number and so fails a test of "at most n days". An unknown death (0) never ends a life; an
/// unknown birth (0) lies before every day.
namespace spx {

// Records

/// Whether the animal has exactly that dam and was born at most `days` days after the date.
SPX_EXPORT bool isSameLitter(const master_data& animal, const std::string& dam, qs_lib::day_number date, double days);

/// Born by the date and neither dead nor lost to follow-up by it. An animal is not alive on its
/// last day.
SPX_EXPORT bool isLiving(const master_data& animal, qs_lib::day_number date);

/// Alive on the date, and has offspring.
SPX_EXPORT bool isLivingBreeder(const master_data& animal, qs_lib::day_number date);

/// Alive and without offspring.
SPX_EXPORT bool isPotentialBreeder(const master_data& animal, qs_lib::day_number date);

/// A real animal with two wild parents ("WILD", exactly) that has bred.
SPX_EXPORT bool isFounder(const master_data& animal);

/// A founder that is alive on the date.
SPX_EXPORT bool isLivingFounder(const master_data& animal, qs_lib::day_number date);

/// A living real animal with two wild parents that has not bred.
SPX_EXPORT bool isPotentialFounder(const master_data& animal, qs_lib::day_number date);

/// An animal with two wild parents that has not bred and is not alive: dead, lost, or not yet born.
/// Pseudo individuals count, unlike in the other questions about founders; kept on purpose.
SPX_EXPORT bool isLostFounder(const master_data& animal, qs_lib::day_number date);

/// Whether a parent is a numbered "WILD", such as "WILD 3"; "WILD" alone does not count.
SPX_EXPORT bool isWildLitter(const master_data& animal);

/// Died within `days` days of its birth; animals lost to follow-up did not die.
SPX_EXPORT bool isNeonatalDeath(const master_data& animal, double days);

/// Died on the day of its birth.
SPX_EXPORT bool isStillBirth(const master_data& animal);

// Values

/// Whether a value lies within bounds, both included. An unknown value (NaN) does, and so does
/// every value when both bounds are unset (NaN). A lower bound may stand alone; an upper bound alone
/// accepts unknown values only. Kept on purpose.
SPX_EXPORT bool isInFcoef(double value, double low, double high);

/// The rule of isInFcoef for generation numbers.
SPX_EXPORT bool isInGeneration(double value, double low, double high);

/// Whether an accuracy is at least as good as the worst accepted one; values beyond the enumeration
/// compare as signed numbers.
SPX_EXPORT bool isNotWorse(DATE_ACCURACY accuracy, DATE_ACCURACY worst);

/// Whether the list holds the sex or ALL; never for an empty list.
SPX_EXPORT bool isInSex(SEX sex, const std::vector<SEX>& list);

/// Whether an animal of sex a can have a partner of sex b: male and female pair with each other,
/// and b may be ALL for every a.
SPX_EXPORT bool isOppositeSex(SEX a, SEX b);

/// Whether a date lies in a span. The brackets are "()", "(]", "[)" or "[]": a square bracket
/// includes the bound. False for any other text.
SPX_EXPORT bool isInDates(qs_lib::day_number date, qs_lib::DateSpan span, const std::string& brackets);

// The view

/// Whether the view accepts the animal's taxon; a view without taxa accepts all.
SPX_EXPORT bool isInTaxonView(const master_data& animal);

/// Whether the animal's user-defined fields equal all user filters of the view. A value that the
/// record lacks counts as the empty text. True when there are no fields or no filters.
SPX_EXPORT bool isInUserView(const master_data& animal);

/// Whether the animal moved to a selected deme within [start, end). Its birth location does not
/// count.
SPX_EXPORT bool movedToDemeView(const master_data& animal, qs_lib::DateSpan span);

/// The day of the first recorded move into a selected deme; 0 when there is no such move or its
/// date is unknown. A day number, not a truth value.
SPX_EXPORT qs_lib::day_number arrivalDemeView(const master_data& animal);

/// The day of the first recorded move out of the selected demes; 0 when the animal was never in
/// them or never left, or when the date is unknown. A day number, not a truth value.
SPX_EXPORT qs_lib::day_number removalDemeView(const master_data& animal);

/// Writes the answers for every record of the store into "filter_test.csv" in the working
/// directory, for diagnosis, and names the file on the console. The view's monitor date is the date
/// asked for; neonatal deaths are those within 30 days, whatever the life history says.
/// @return false when the file cannot be opened or not all of it could be written; an existing file
///         is then unchanged
[[nodiscard]] SPX_EXPORT bool TestFilters();

/// Writes the table of TestFilters() to the given file and shows nothing. "~" is replaced.
/// @return false when the file cannot be opened or not all of it could be written; an existing file
///         is then unchanged
[[nodiscard]] SPX_EXPORT bool TestFilters(const std::string& file_name);

}  // namespace spx
