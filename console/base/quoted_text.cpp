#include "console/base/quoted_text.h"

namespace spx::console {
namespace {

constexpr std::size_t LONGEST_TEXT = 60;

/// The text cut where no UTF-8 character is torn apart.
std::string_view shortened(std::string_view text) {
  std::size_t size = LONGEST_TEXT;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) {
    --size;
  }
  return text.substr(0, size);
}

}  // namespace

std::string quotedText(std::string_view text) {
  const bool cut = text.size() > LONGEST_TEXT;
  std::string shown(cut ? shortened(text) : text);
  for (char& letter : shown) {
    if (static_cast<unsigned char>(letter) < ' ' || letter == '\x7F') {
      letter = '?';
    }
  }
  return "\"" + shown + (cut ? "...\"" : "\"");
}

}  // namespace spx::console
