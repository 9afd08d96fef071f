#pragma once

#include <memory>

#include "console/tables/reading_notes.h"
#include "console/tables/reading_options.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// The same rows with cells as the fields expect them, and a note for everything that was not taken
/// literally: dates in the forms of date_reading.h as ISO dates, sexes in other words, decimal
/// commas. What cannot be understood stays as it is, and its field refuses it.
///
/// Where day and month could be exchanged, the whole column decides: when one of its dates can be
/// read in one order only, so are all. Throws TableError from next() when nothing decides.
///
/// @param reopen  opens the same rows anew, to look at a whole column; null where that cannot be
/// @param is_csv  an apostrophe before what looks like a formula is a mark for spreadsheets and no part of the text
/// @param notes   must outlive the rows
std::unique_ptr<RowSource> readCells(std::unique_ptr<RowSource> rows, table_source::opener reopen,
                                     const reading_options& options, bool is_csv, TableNotes& notes);

}  // namespace spx::console
