#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace spx::console {

/// How the bytes of a text file are to be understood.
struct text_encoding {
  std::string name;                              ///< as iconv knows it; empty: found out
  std::function<void(const std::string&)> tell;  ///< hears what was found out, when it is not UTF-8; or null
};

using text_file = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// Opens a file whose bytes come as UTF-8, whatever it is written in.
///
/// UTF-16 is known by its byte-order mark or the NUL bytes of its first characters. A text is UTF-8
/// when any of its first characters beyond ASCII is; otherwise it is Windows-1252, of which Latin-1
/// is a part. A byte-order mark of UTF-8 comes as it is. Bytes that the encoding does not have become
/// U+FFFD; in UTF-8 all bytes come as they are.
///
/// @return null, with errno set, when the file cannot be opened
text_file openText(const std::string& file, const text_encoding& encoding);

/// Throws UsageError for an encoding that this system does not know.
void checkEncoding(const std::string& name);

}  // namespace spx::console
