#pragma once

/// Marks the symbols that the shared library exports; all others are hidden.
#define SPX_EXPORT __attribute__((visibility("default")))
