#pragma once

#include <cstdint>

namespace CLI {
class App;
}

namespace spx::console {

/// How a command shows its results: for people, or for scripts, which then get the same facts
/// under names that do not change.
enum class OUTPUT_FORMAT : std::uint8_t { TEXT, CSV, JSON };

/// Offers `--format text|csv|json`. The format must live until the command line is parsed.
void addFormatOption(CLI::App& app, OUTPUT_FORMAT& format);

}  // namespace spx::console
