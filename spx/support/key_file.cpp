#include "spx/support/key_file.h"

#include <string_view>

namespace qs_lib {
namespace {
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::string_view END_MARK = "[END]";
constexpr std::string_view HEX_DIGITS = "0123456789ABCDEF";

// Characters that would end a text too early or make its line look like another kind of line.
constexpr std::string_view MARKS_OF_SECTION = "]";
constexpr std::string_view MARKS_OF_KEY = "#[(";
constexpr std::string_view MARKS_OF_TYPE = ")";
constexpr std::string_view NO_MARKS;

bool isControl(char character) {
  return (character >= '\0' && character < ' ') || character == '\x7F';
}

void appendHex(std::string& out, char character) {
  const auto byte = static_cast<unsigned char>(character);
  out += "\\x";
  out += HEX_DIGITS[byte >> 4];
  out += HEX_DIGITS[byte & 15];
}

/// Appends a text so that it stays on its line and its end is found. The reader drops blanks at both
/// ends, so those are escaped too.
void appendEscaped(std::string& out, const std::string& text, std::string_view marks) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char character = text[i];
    const bool outer_blank = character == ' ' && (i == 0 || i + 1 == text.size());
    if (character == '\\') {
      out += "\\\\";
    } else if (character == '\n') {
      out += "\\n";
    } else if (character == '\t') {
      out += "\\t";
    } else if (isControl(character) || outer_blank || marks.find(character) != marks.npos) {
      appendHex(out, character);
    } else {
      out += character;
    }
  }
}

/// The value of two hexadecimal digits at the position, or -1.
int hexValue(const std::string& text, std::size_t position) {
  int value = 0;
  for (std::size_t i = position; i < position + 2; ++i) {
    const std::size_t digit = i < text.size() ? HEX_DIGITS.find(text[i]) : HEX_DIGITS.npos;
    if (digit == HEX_DIGITS.npos) {
      return -1;
    }
    value = value * 16 + static_cast<int>(digit);
  }
  return value;
}

/// Undoes appendEscaped(). A backslash that does not begin an escape is an ordinary character, so that
/// it can be typed by hand.
std::string unescaped(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
    const int hex = next == 'x' ? hexValue(text, i + 2) : -1;
    if (next == '\\') {
      out += '\\';
    } else if (next == 'n') {
      out += '\n';
    } else if (next == 't') {
      out += '\t';
    } else if (hex >= 0) {
      out += static_cast<char>(hex);
    } else {
      out += text[i];
      continue;
    }
    i += next == 'x' ? 3 : 1;
  }
  return out;
}

std::string part(const std::string& line, std::size_t start, std::size_t end) {
  return unescaped(allTrim(line.substr(start, end - start)));
}
}  // namespace

std::string keyFileText(const std::string& section, const key_file_entries& entries) {
  std::string text = "[";
  appendEscaped(text, section, MARKS_OF_SECTION);
  text += "]\n";
  for (const auto& [key, element] : entries) {
    text += "\n# ";
    appendEscaped(text, element.description, NO_MARKS);
    text += '\n';
    appendEscaped(text, key, MARKS_OF_KEY);
    text += " (";
    appendEscaped(text, element.type, MARKS_OF_TYPE);
    text += ") = ";
    appendEscaped(text, element.value, NO_MARKS);
    text += '\n';
  }
  text += '\n';
  text += END_MARK;
  text += '\n';
  return text;
}

bool KeyFileParser::takeLine(const std::string& line) {
  const bool marked = first_line_ && line.starts_with(BYTE_ORDER_MARK);
  first_line_ = false;
  const std::string content = allTrim(marked ? line.substr(BYTE_ORDER_MARK.size()) : line);
  if (content.empty()) {
    description_.clear();
    return true;
  }
  if (content.front() == '#') {
    description_ = part(content, 1, content.size());
    return true;
  }
  return content.front() == '[' ? takeBracketLine(content) : takeEntry(content);
}

bool KeyFileParser::takeBracketLine(const std::string& line) {
  if (line.find(']') != line.size() - 1) {
    return false;
  }
  if (state_ == parser_state::BEFORE_SECTION) {
    section_ = part(line, 1, line.size() - 1);
    state_ = parser_state::ENTRIES;
    return true;
  }
  const bool ends = state_ == parser_state::ENTRIES && line == END_MARK;
  state_ = parser_state::ENDED;
  return ends;
}

bool KeyFileParser::takeEntry(const std::string& line) {
  const std::size_t open = line.find('(');
  const std::size_t close = line.find(')', open);
  const std::size_t equals = line.find_first_not_of(" \t", close == line.npos ? close : close + 1);
  if (state_ != parser_state::ENTRIES || equals == line.npos || line[equals] != '=') {
    return false;
  }
  ConfigElement element;
  element.type = part(line, open + 1, close);
  element.value = part(line, equals + 1, line.size());
  element.description = description_;
  entries_.insert_or_assign(part(line, 0, open), std::move(element));
  description_.clear();
  return true;
}
}  // namespace qs_lib
