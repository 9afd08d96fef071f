#pragma once

#include <string>

#include "spx/core/master_data.h"
#include "spx/support/export.h"

/// @file
/// Listings of the studbook on the console: tables with one line per animal whose `print` flag is
/// set, and the card of one animal. Tables pause after every 20 lines, counted over all listings of
/// the process, and after the footer. A store without an index lists no animals.
namespace spx {

/// The column heads and their rule.
SPX_EXPORT std::string studbookHeader();

/// The rule and the legend.
SPX_EXPORT std::string studbookFooter();

/// The column names of masterDebug.
SPX_EXPORT std::string debugHeader();

/// The table line of an animal. Longer values widen their column. The genetic generation is blank
/// below 0 and "nan" when it is not computed; the inbreeding coefficient is blank when it is not
/// computed.
SPX_EXPORT std::string masterLine(const master_data& animal);

/// The same facts without widths and marks, then a remark.
SPX_EXPORT std::string masterDebug(const master_data& animal, const std::string& info);

/// Shows the table line of an animal whose `print` flag is set, and pauses when a page is full.
SPX_EXPORT void prnMaster(const master_data& animal);

// These set the `print` flag of one record, and return it.

/// For the studbook: the animal passes the view and is selected.
SPX_EXPORT bool inListing(master_data& animal);

/// For the living: as inListing, without the accuracy of the death date, but alive and in a
/// selected deme on the view's monitor date.
SPX_EXPORT bool inLiving(master_data& animal);

/// For pedigrees: the animal is selected, whatever the view.
SPX_EXPORT bool inPedigree(master_data& animal);

// The tables. All change `print` flags and do not restore them. For an empty store they report "No
// animals in list".

/// Lists the studbook. @param all  every record, pseudo individuals and those outside the view too
SPX_EXPORT bool listStudbookData(bool all);

/// Lists the living animals of the view.
SPX_EXPORT bool listLiving();

/// Lists the offspring of an animal whatever the view, in birth order; selects them, and nothing
/// else.
/// @return false after "Can not find animal" for an unknown ID
SPX_EXPORT bool listOffspring(const std::string& id);

/// Lists an animal and its ancestors in birth order, and selects them; which ancestors are found, see
/// AnimalData::individualPedigree(). That function reports an unknown ID; the previous selection is
/// listed then.
SPX_EXPORT bool listPedigree(const std::string& id);

/// Shows the card of an animal, then pauses. Values that are not computed are "n/c".
SPX_EXPORT void listAnimal(const master_data& animal);

/// Shows the card of the first animal with that ID; linear.
/// @return false after "Cannot find animal." for an unknown ID
SPX_EXPORT bool listAnimal(const std::string& id);

}  // namespace spx
