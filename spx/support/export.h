#pragma once

/// Marks what the shared library offers to its hosts; every other symbol stays hidden.
#define SPX_EXPORT __attribute__((visibility("default")))
