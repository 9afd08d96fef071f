#pragma once

#include <memory>

#include "console/tables/reading_notes.h"
#include "console/tables/reading_options.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// The same rows with their cells converted to what the fields expect, and a note for everything
/// that was not taken literally: dates in the forms of date_reading.h as ISO dates, sexes in other
/// words, decimal commas. Text that cannot be understood is unchanged, and its field refuses it.
///
/// Where day and month could be exchanged, the whole column decides: when one of its dates can be read in only one
/// order, all are read in that order. Throws TableError from next() when nothing decides.
///
/// @param reopen  opens the same rows again, to examine a whole column; null where that is impossible
/// @param is_csv  an apostrophe before what looks like a formula is a mark for spreadsheets and no part of the text
/// @param notes   must outlive the rows
std::unique_ptr<RowSource> readCells(std::unique_ptr<RowSource> rows, table_source::opener reopen,
                                     const reading_options& options, bool is_csv, TableNotes& notes);

}  // namespace spx::console
