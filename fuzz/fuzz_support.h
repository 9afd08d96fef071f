#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The entry that every target defines; libFuzzer calls it once per input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// What the fuzz targets share.
namespace spx::fuzz {

/// Ends the process with the message when the condition does not hold, in every build type. The
/// fuzzer then keeps the input.
void require(bool condition, const char* message);

/// The input as a text.
std::string_view asText(const std::uint8_t* data, std::size_t size);

/// Splits a text at every separator; n separators give n + 1 parts.
std::vector<std::string_view> splitAt(std::string_view text, char separator);

/// Undoes the escapes \\n, \\t, \\r, \\0 and a doubled backslash, so that parts of an input of
/// lines can hold any byte while seeds stay readable.
std::string unescaped(std::string_view text);

/// The lines of an input with their escapes undone.
std::vector<std::string> linesOf(std::string_view text);

/// The number at the start of the text; 0 when there is none or it is too large.
std::uint64_t wholeNumber(std::string_view text);

/// The real at the start of the text, "nan" and "inf" too; 0 when there is none.
double realNumber(std::string_view text);

/// Prepares the process at the first call: creates a directory in memory, which is removed at the
/// end of the process, and makes it the home and the working directory. From then on listings are
/// discarded and pauses do not wait. @return the directory
const std::string& ramDirectory();

std::string contentOf(const std::string& path);
void writeContent(const std::string& path, std::string_view content);

}  // namespace spx::fuzz
