#include "console/tables/text_encoding.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iconv.h>
#include <string_view>
#include <utility>

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/tables/row_source.h"

namespace spx::console {
namespace {

constexpr std::size_t PART = std::size_t{128} << 10;
constexpr char WINDOWS[] = "WINDOWS-1252";
constexpr std::string_view UNKNOWN_CHARACTER = "\xEF\xBF\xBD";

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char letter) { return static_cast<signed char>(letter) >= 0; });
}

/// The length in bytes of the UTF-8 character that begins with this byte; 0 for a byte that cannot begin one.
std::size_t characterSize(unsigned char first) {
  if (first < 0x80) {
    return 1;
  }
  if (first < 0xC2 || first > 0xF4) {
    return 0;
  }
  return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

/// Whether a text is UTF-8, at least in part; it may end within a character. Text in other encodings practically never
/// contains a UTF-8 character beyond ASCII. In a mixed file each cell is shown in its own encoding.
bool hasUtf8(std::string_view text) {
  bool is_all = true;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = characterSize(static_cast<unsigned char>(text[at]));
    const std::string_view rest = text.substr(at + 1, size == 0 ? 0 : size - 1);
    const bool continues = std::all_of(rest.begin(), rest.end(), [](char letter) { return (letter & 0xC0) == 0x80; });
    const bool is_character = size != 0 && continues;
    if (is_character && size > 1 && rest.size() + 1 == size) {
      return true;
    }
    is_all &= is_character;
    at += is_character ? size : 1;
  }
  return is_all;
}

/// The kind of UTF-16 that the beginning of a text suggests; empty for none.
std::string utf16Of(std::string_view text) {
  if (text.starts_with("\xFF\xFE")) {
    return "UTF-16LE";
  }
  if (text.starts_with("\xFE\xFF")) {
    return "UTF-16BE";
  }
  constexpr std::size_t LOOKED_AT = 32;
  const std::string_view begin = text.substr(0, std::min(LOOKED_AT, text.size() / 2 * 2));
  std::size_t zeros[2] = {};
  for (std::size_t at = 0; at < begin.size(); ++at) {
    zeros[at % 2] += begin[at] == '\0' ? 1 : 0;
  }
  constexpr std::size_t FEWEST = 8;
  if (begin.size() < FEWEST || (zeros[0] != 0) == (zeros[1] != 0) || zeros[0] + zeros[1] < begin.size() / 4) {
    return {};
  }
  return zeros[1] != 0 ? "UTF-16LE" : "UTF-16BE";
}

std::string shownName(const std::string& name) {
  return name == WINDOWS ? "Windows-1252 (or Latin-1)" : name;
}

}  // namespace

class EncodingConverter {
 public:
  explicit EncodingConverter(const std::string& from) : state_(::iconv_open("UTF-8", from.c_str())) {}
  ~EncodingConverter() {
    if (isOpen()) {
      ::iconv_close(state_);
    }
  }
  EncodingConverter(const EncodingConverter&) = delete;
  EncodingConverter& operator=(const EncodingConverter&) = delete;

  bool isOpen() const { return state_ != reinterpret_cast<iconv_t>(-1); }

  /// Converts the complete characters; the rest stays in `from`.
  void convert(std::string& from, std::string& to, bool is_end) {
    char* in = from.data();
    std::size_t in_left = from.size();
    while (in_left > 0) {
      char buffer[4096];
      char* out = buffer;
      std::size_t out_left = sizeof buffer;
      const std::size_t result = ::iconv(state_, &in, &in_left, &out, &out_left);
      const int error = errno;
      to.append(buffer, static_cast<std::size_t>(out - buffer));
      if (result == static_cast<std::size_t>(-1) && error == EINVAL && !is_end) {
        break;
      }
      if (result == static_cast<std::size_t>(-1) && error != E2BIG) {
        to += UNKNOWN_CHARACTER;
        ++in;
        --in_left;
      }
    }
    from.erase(0, from.size() - in_left);
  }

 private:
  iconv_t state_;
};

TextReader::TextReader(const std::string& file, text_encoding encoding)
    : file_(std::fopen(file.c_str(), "rb"), &std::fclose), encoding_(std::move(encoding)) {
  if (!file_) {
    throw TableError(0, std::string("cannot be opened: ") + std::strerror(errno));
  }
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);
  if (!encoding_.name.empty()) {
    setEncoding(encoding_.name);
  }
}

TextReader::~TextReader() = default;

std::size_t TextReader::read(char* to, std::size_t wanted) {
  std::size_t count = 0;
  while (count < wanted) {
    if (given_ == ready_.size()) {
      if (at_end_) {
        break;
      }
      fill();
    }
    const std::size_t part = std::min(wanted - count, ready_.size() - given_);
    std::memcpy(to + count, ready_.data() + given_, part);
    given_ += part;
    count += part;
  }
  return count;
}

void TextReader::fill() {
  const std::size_t had = raw_.size();
  raw_.resize(had + PART);
  const std::size_t count = std::fread(raw_.data() + had, 1, PART, file_.get());
  if (std::ferror(file_.get()) != 0) {
    throw TableError(0, std::string("cannot be read: ") + std::strerror(errno));
  }
  raw_.resize(had + count);
  at_end_ = count < PART;
  ready_.clear();
  given_ = 0;
  if (is_first_) {
    is_first_ = false;
    begin();
  }
  if (!settled_ && !isAscii(raw_)) {
    settle();
  }
  if (converter_) {
    converter_->convert(raw_, ready_, at_end_);
  } else {
    ready_.swap(raw_);
  }
}

void TextReader::begin() {
  const std::string utf16 = utf16Of(raw_);
  if (!settled_ && !utf16.empty()) {
    setEncoding(utf16);
    report(utf16);
  }
  const bool has_mark = raw_.starts_with("\xFF\xFE") || raw_.starts_with("\xFE\xFF");
  if (converter_ && has_mark) {
    raw_.erase(0, 2);
  }
}

void TextReader::settle() {
  if (hasUtf8(raw_)) {
    settled_ = true;
  } else {
    setEncoding(WINDOWS);
    report(WINDOWS);
  }
}

void TextReader::setEncoding(const std::string& name) {
  settled_ = true;
  converter_ = std::make_unique<EncodingConverter>(name);
  if (!converter_->isOpen()) {
    converter_.reset();
  }
}

void TextReader::report(const std::string& name) const {
  if (encoding_.tell) {
    encoding_.tell("read as " + shownName(name) + "; --encoding NAME overrides this");
  }
}

void checkEncoding(const std::string& name) {
  if (!name.empty() && !EncodingConverter(name).isOpen()) {
    throw UsageError("--encoding: " + quotedText(name) +
                     " is not known; common ones are utf-8, utf-16, latin1 and windows-1252");
  }
}

}  // namespace spx::console
