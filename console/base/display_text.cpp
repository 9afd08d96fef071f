#include "console/base/display_text.h"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <locale.h>

namespace spx::console {
namespace {

constexpr std::uint32_t NOT_UTF8 = 0xFFFFFFFF;

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char letter) { return static_cast<unsigned char>(letter) < 0x80; });
}

/// Decodes the first character of a text, which must not be empty.
/// @param size  set to its number of bytes; 1 for a byte that cannot begin a character
std::uint32_t firstCharacter(std::string_view text, std::size_t& size) {
  constexpr std::uint32_t SMALLEST[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto byte = [&text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  size = 1;
  if (byte(0) < 0x80) {
    return byte(0);
  }
  const std::size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
  if (byte(0) < 0xC2 || byte(0) > 0xF4 || text.size() < length) {
    return NOT_UTF8;
  }
  std::uint32_t character = byte(0) & (0xFFU >> (length + 1));
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xC0U) != 0x80U) {
      return NOT_UTF8;
    }
    character = character << 6U | (byte(at) & 0x3FU);
  }
  const bool is_surrogate = character >= 0xD800 && character < 0xE000;
  if (character < SMALLEST[length] || character > 0x10FFFF || is_surrogate) {
    return NOT_UTF8;
  }
  size = length;
  return character;
}

bool isUtf8(std::string_view text) {
  for (std::size_t size = 0; !text.empty(); text.remove_prefix(size)) {
    if (firstCharacter(text, size) == NOT_UTF8) {
      return false;
    }
  }
  return true;
}

bool isControl(std::uint32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 || character == 0x2029;
}

bool turnsDirection(std::uint32_t character) {
  return character == 0x200E || character == 0x200F || character == 0x061C ||
         (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

std::string writtenOut(std::uint32_t character) {
  switch (character) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      char text[8];
      std::snprintf(text, sizeof text, character < 0x100 ? "\\x%02x" : "\\u%04x", static_cast<unsigned>(character));
      return text;
  }
}

/// The width of a character according to the C library, which needs a UTF-8 locale for it. The locale of the
/// process does not change.
int widthOf(std::uint32_t character) {
  static const locale_t utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
  if (utf8 == static_cast<locale_t>(nullptr)) {
    return 1;
  }
  const locale_t former = ::uselocale(utf8);
  const int width = ::wcwidth(static_cast<wchar_t>(character));
  ::uselocale(former);
  return width < 0 ? 1 : width;
}

}  // namespace

std::string utf8Text(std::string_view text) {
  if (isUtf8(text)) {
    return std::string(text);
  }
  std::string converted;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x80) {
      converted += letter;
    } else {
      converted += static_cast<char>(0xC0U | byte >> 6U);
      converted += static_cast<char>(0x80U | (byte & 0x3FU));
    }
  }
  return converted;
}

std::string visibleText(std::string_view text) {
  const auto is_plain = [](char letter) { return letter >= ' ' && letter < '\x7F'; };
  if (std::all_of(text.begin(), text.end(), is_plain)) {
    return std::string(text);
  }
  const std::string utf8 = utf8Text(text);
  std::string visible;
  std::size_t size = 0;
  for (std::string_view rest = utf8; !rest.empty(); rest.remove_prefix(size)) {
    const std::uint32_t character = firstCharacter(rest, size);
    if (isControl(character) || turnsDirection(character)) {
      visible += writtenOut(character);
    } else {
      visible += rest.substr(0, size);
    }
  }
  return visible;
}

std::size_t displayWidth(std::string_view text) {
  if (isAscii(text)) {
    return text.size();
  }
  std::size_t width = 0;
  std::size_t size = 0;
  for (; !text.empty(); text.remove_prefix(size)) {
    width += static_cast<std::size_t>(widthOf(firstCharacter(text, size)));
  }
  return width;
}

std::string padded(std::string_view text, std::size_t width, bool right_aligned) {
  const std::size_t used = displayWidth(text);
  const std::string blanks(used < width ? width - used : 0, ' ');
  return right_aligned ? blanks + std::string(text) : std::string(text) + blanks;
}

std::string_view firstColumns(std::string_view text, std::size_t width) {
  std::size_t end = 0;
  std::size_t size = 0;
  for (std::size_t used = 0; end < text.size(); end += size) {
    used += static_cast<std::size_t>(widthOf(firstCharacter(text.substr(end), size)));
    if (used > width) {
      break;
    }
  }
  return text.substr(0, end);
}

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
  width = std::max<std::size_t>(width, 2);  // room for the widest character
  std::vector<std::string> lines;
  while (displayWidth(text) > width) {
    const std::size_t end = firstColumns(text, width).size();
    const std::size_t blank = text.substr(0, end + 1).rfind(' ');
    const bool has_blank = blank != std::string_view::npos && blank > 0;
    lines.emplace_back(text.substr(0, has_blank ? blank : end));
    text.remove_prefix(has_blank ? blank + 1 : end);
  }
  lines.emplace_back(text);
  return lines;
}

}  // namespace spx::console
