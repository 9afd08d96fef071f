#pragma once

#include "console/output/table.h"

namespace spx::console {

/// The figures of the view for a yearly report: numbers at its end, the changes of the last twelve months, growth,
/// survival and reproduction. Sets View.monitor_date to the end of the view.
/// @param for_people  counts without decimals, and each section named once
Table demographyPage(bool for_people);

}  // namespace spx::console
