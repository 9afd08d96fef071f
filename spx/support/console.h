#pragma once

#include <functional>
#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// Writes a status message and a line end to where display() writes, verbose or not.
SPX_EXPORT void message(const std::string& text);

/// Writes the text unchanged to standard output, or hands it to the host's handler.
SPX_EXPORT void display(const std::string& text);

/// Flushes standard output, then writes the text and a line end to standard error.
SPX_EXPORT void errorMessage(const std::string& text);

/// Waits for a key, which is not shown. Returns at once unless both standard input and standard
/// output are terminals. A key typed ahead ends the waiting; further keys typed ahead are dropped.
/// The state of the terminal is restored. The key that interrupts a program then raises SIGINT.
SPX_EXPORT void pauseKey();

/// @{
/// Whether progress bars are shown; false at first. Messages are shown regardless.
SPX_EXPORT bool isVerbose();
SPX_EXPORT void setVerbose(bool verbose);
/// @}

/// Sets what pauseKey() does instead of waiting; an empty handler restores waiting. A handler may
/// replace or remove itself while it runs.
SPX_EXPORT void setPauseHandler(std::function<void()> handler);

/// Sets what takes the texts of display() and message() instead of standard output, for a host
/// that collects them; an empty handler restores the output. A handler may replace or remove itself
/// while it runs. Progress bars are always drawn on standard output.
SPX_EXPORT void setDisplayHandler(std::function<void(const std::string&)> handler);
}  // namespace qs_lib
