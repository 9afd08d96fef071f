#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace spx::console {

/// The encoding of a text file.
struct text_encoding {
  std::string name;                              ///< a name that iconv knows; empty: detected
  std::function<void(const std::string&)> tell;  ///< called with the detected encoding unless it is UTF-8; may be null
};

class EncodingConverter;

/// Reads a text file as UTF-8, whatever its encoding is.
///
/// UTF-16 is recognised by its byte-order mark or the NUL bytes of its first characters. A text is
/// taken as UTF-8 when any of its first characters beyond ASCII is valid UTF-8, and otherwise as
/// Windows-1252, which includes Latin-1. Bytes that the encoding does not define become U+FFFD;
/// UTF-8 text is passed on unchanged, with its byte-order mark and invalid bytes.
class TextReader {
 public:
  /// Throws TableError when the file cannot be opened.
  TextReader(const std::string& file, text_encoding encoding);
  ~TextReader();
  TextReader(const TextReader&) = delete;
  TextReader& operator=(const TextReader&) = delete;

  /// The next bytes, as many as wanted unless the file ends. Throws TableError when it cannot be read.
  /// @return how many were written to `to`
  std::size_t read(char* to, std::size_t wanted);

 private:
  void fill();
  void begin();
  void settle();
  void setEncoding(const std::string& name);
  void report(const std::string& name) const;

  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  text_encoding encoding_;
  std::unique_ptr<EncodingConverter> converter_;
  std::string raw_;    ///< as in the file, not yet converted
  std::string ready_;  ///< as UTF-8
  std::size_t given_ = 0;
  bool is_first_ = true;
  bool settled_ = false;
  bool at_end_ = false;
};

/// Throws UsageError for an encoding that this system does not know.
void checkEncoding(const std::string& name);

}  // namespace spx::console
