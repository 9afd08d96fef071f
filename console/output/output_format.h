#pragma once

#include <cstdint>
#include <string>

namespace CLI {
class App;
}

namespace spx::console {

/// How a command shows its results: for people, or for scripts, which get the same facts under
/// names that never change.
enum class OUTPUT_FORMAT : std::uint8_t { TEXT, CSV, JSON };

/// The format of a result that goes to a file: that which was asked for, or where none was, that of the ending, `.csv`
/// or `.json`. Throws UsageError for an ending that contradicts it, and for those of files that are not written.
/// @param offers_xlsx  `.xlsx` is taken, too: then ask isXlsx()
OUTPUT_FORMAT formatOfFile(OUTPUT_FORMAT asked, const std::string& file, bool offers_xlsx);

/// Whether the name of a file ends in `.xlsx`.
bool isXlsx(const std::string& file);

/// Adds `--format text|csv|json`. The format must live until the command line is parsed.
void addFormatOption(CLI::App& app, OUTPUT_FORMAT& format);

}  // namespace spx::console
