#include <cstdint>

#include "spx/support/xml_report.h"

namespace qs_lib {
namespace {
/// The length of the UTF-8 sequence at the start of the text; 0 when it is not valid.
std::size_t sequenceLength(std::string_view text) {
  struct sequence_form {
    unsigned char mask, lead;
    std::uint32_t smallest;  ///< overlong forms of smaller characters are not UTF-8
  };
  constexpr sequence_form FORMS[] = {{0x80, 0x00, 0}, {0xE0, 0xC0, 0x80}, {0xF0, 0xE0, 0x800}, {0xF8, 0xF0, 0x10000}};
  const auto lead = static_cast<unsigned char>(text[0]);
  for (std::size_t length = 1; length <= std::size(FORMS) && length <= text.size(); ++length) {
    const auto& [mask, form, smallest] = FORMS[length - 1];
    if ((lead & mask) != form) {
      continue;
    }
    std::uint32_t code = lead & static_cast<unsigned char>(~mask);
    for (std::size_t i = 1; i < length; ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      if ((byte & 0xC0) != 0x80) {
        return 0;
      }
      code = code << 6 | (byte & 0x3F);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < smallest || code > 0x10FFFF || surrogate ? 0 : length;
  }
  return 0;
}

void appendLatin1(std::string& out, char character) {
  const auto byte = static_cast<unsigned char>(character);
  out += static_cast<char>(0xC0 | byte >> 6);
  out += static_cast<char>(0x80 | (byte & 0x3F));
}

void appendSingle(std::string& out, char character, bool in_attribute) {
  switch (character) {
    case '&':
      out += "&amp;";
      return;
    case '<':
      out += "&lt;";
      return;
    case '>':
      out += "&gt;";
      return;
    case '"':
      out += in_attribute ? "&quot;" : "\"";
      return;
    case '\'':
      out += in_attribute ? "&apos;" : "'";
      return;
    case '\n':
      out += in_attribute ? "&#10;" : "\n";
      return;
    case '\r':
      out += "&#13;";  // readers would turn an unescaped CR into a line feed
      return;
    case '\t':
      out += in_attribute ? "&#9;" : "\t";
      return;
    default:
      // XML forbids all other control characters, even escaped.
      if (character >= ' ') {
        out += character;
      }
  }
}
}  // namespace

void appendXmlText(std::string& out, std::string_view text, bool in_attribute) {
  while (!text.empty()) {
    const std::size_t length = sequenceLength(text);
    const std::string_view sequence = text.substr(0, length == 0 ? 1 : length);
    if (length == 0) {
      appendLatin1(out, text[0]);
    } else if (length == 1) {
      appendSingle(out, text[0], in_attribute);
    } else if (sequence != "\xEF\xBF\xBE" && sequence != "\xEF\xBF\xBF") {  // U+FFFE and U+FFFF are not characters
      out += sequence;
    }
    text.remove_prefix(sequence.size());
  }
}
}  // namespace qs_lib
