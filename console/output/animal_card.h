#pragma once

#include "spx/core/master_data.h"

#include "console/output/table_options.h"

namespace spx::console {

/// Shows everything that is known about an animal: for people as a card with its events, for scripts as one record.
/// In CSV the events are columns (`events_1_date`).
void showCard(position animal, const table_options& options);

}  // namespace spx::console
