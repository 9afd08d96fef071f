#pragma once

#include <memory>

#include "console/tables/row_source.h"

namespace spx::console {

/// The same rows, read some thousands ahead by a second thread: stepping through the rows of a
/// database takes as long as parsing them. After the first next() only that thread may use the
/// source of the rows.
std::unique_ptr<RowSource> readAhead(std::unique_ptr<RowSource> rows);

}  // namespace spx::console
