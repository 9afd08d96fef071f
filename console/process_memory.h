#pragma once

namespace spx::console {

/// Keeps freed memory for the next use instead of handing it back to the system: the steps of
/// loading a large studbook need tables of tens of megabytes one after the other, and fresh pages
/// cost more time than the steps themselves.
void keepFreedMemory();

}  // namespace spx::console
