#pragma once

#include <memory>

#include "console/tables/row_source.h"

namespace spx::console {

/// The same rows, read some thousand ahead by a second thread: a database takes as long to step
/// from row to row as it takes to understand them. From the first next() on, what the rows come
/// from belongs to that thread.
std::unique_ptr<RowSource> readAhead(std::unique_ptr<RowSource> rows);

}  // namespace spx::console
