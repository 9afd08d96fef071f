#pragma once

#include <memory>
#include <span>

#include "console/tables/column_titles.h"
#include "console/tables/reading_notes.h"
#include "console/tables/reading_options.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// The same table without what people write around it: lines above the titles are skipped when one
/// of the first twenty lines holds more known titles than the first, and with them what a field
/// must have. A line below such as "Total" is refused, skipped or kept, as the options say: its ID
/// is a footer's word; or it has such words in the column of the ID, or in the first cell without an ID, and no other
/// field.
/// @param notes  must outlive the rows
std::unique_ptr<RowSource> settleLayout(std::unique_ptr<RowSource> rows, std::span<const table_field> fields,
                                        std::span<const title_choice> choices, const reading_options& options,
                                        TableNotes& notes);

}  // namespace spx::console
