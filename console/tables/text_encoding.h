#pragma once

#include <cstddef>
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

class EncodingConverter;

/// A file whose bytes come as UTF-8, whatever it is written in.
///
/// UTF-16 is known by its byte-order mark or the NUL bytes of its first characters. A text is UTF-8
/// when any of its first characters beyond ASCII is; otherwise it is Windows-1252, of which Latin-1
/// is a part. A byte-order mark of UTF-8 comes as it is. Bytes that the encoding does not have become
/// U+FFFD; in UTF-8 all bytes come as they are.
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
