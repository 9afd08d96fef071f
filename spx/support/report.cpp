#include "spx/support/report.h"

namespace qs_lib {
Report::Report() = default;

Report::~Report() = default;
}  // namespace qs_lib
