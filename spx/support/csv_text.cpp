#include "spx/support/csv_text.h"

#include <array>

namespace qs_lib {
namespace {
// By character: whether a text that contains it is quoted.
constexpr std::array<bool, 256> IS_MISREAD = [] {
  std::array<bool, 256> is_misread{};
  for (const char character : {'"', '\'', '#', '\n', '\r'}) {
    is_misread[static_cast<unsigned char>(character)] = true;
  }
  return is_misread;
}();

// Branch-free scan; almost no text needs quotes.
bool needsQuotes(std::string_view text, char separator) {
  if (text.empty()) {
    return false;
  }
  bool is_misread = text.front() == ' ' || text.back() == ' ';
  for (const char character : text) {
    is_misread |= character == separator || IS_MISREAD[static_cast<unsigned char>(character)];
  }
  return is_misread;
}
}  // namespace

void appendCsvText(std::string& line, std::string_view text, char separator) {
  if (!needsQuotes(text, separator)) {
    line += text;
    return;
  }
  line += '"';
  for (const char character : text) {
    if (character == '"') {
      line += '"';
    }
    line += character;
  }
  line += '"';
}
}  // namespace qs_lib
