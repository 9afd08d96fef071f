#include "fuzz/xml_reader.h"

#include <charconv>
#include <cstdint>

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

bool isXmlCharacter(std::uint32_t code) {
  return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
         (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

std::string encoded(std::uint32_t code) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  const auto tail = [&](int shift) { return byte(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) {
    return {byte(code)};
  }
  if (code < 0x800) {
    return {byte(0xC0 | code >> 6), tail(0)};
  }
  if (code < 0x10000) {
    return {byte(0xE0 | code >> 12), tail(6), tail(0)};
  }
  return {byte(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
}

struct decoded_character {
  std::uint32_t code = 0;
  std::size_t size = 0;  ///< in bytes; 0 when the text does not begin with UTF-8
};

/// Decodes the first character. Tries every length; the right one is the one that encodes to the same bytes again.
decoded_character decoded(std::string_view text) {
  for (std::size_t size = 1; size <= 4 && size <= text.size(); ++size) {
    std::uint32_t code = static_cast<unsigned char>(text[0]);
    code &= size == 1 ? 0xFFU : 0x7FU >> size;
    for (std::size_t i = 1; i < size; ++i) {
      code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (!is_surrogate && code <= 0x10FFFF && encoded(code) == text.substr(0, size)) {
      return {code, size};
    }
  }
  return {};
}

class XmlReader {
 public:
  explicit XmlReader(std::string_view document) : left_(document) {}

  xml_element document() {
    need("<?xml ");
    skipPast("?>\n");
    while (take("<?")) {
      skipPast("?>\n");
    }
    need("<");
    xml_element root = element();
    need("\n");
    require(left_.empty(), "something follows the root element");
    return root;
  }

 private:
  bool take(std::string_view expected) {
    if (!left_.starts_with(expected)) {
      return false;
    }
    left_.remove_prefix(expected.size());
    return true;
  }

  void need(std::string_view expected) { require(take(expected), "markup is missing"); }

  void skipPast(std::string_view mark) {
    const std::size_t found = left_.find(mark);
    require(found != std::string_view::npos, "an instruction does not end");
    left_.remove_prefix(found + mark.size());
  }

  std::string name() {
    constexpr std::string_view LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_0123456789";
    const std::size_t found = left_.find_first_not_of(LETTERS);
    const std::size_t size = found == std::string_view::npos ? left_.size() : found;
    require(size > 0, "a name is missing");
    const std::string text(left_.substr(0, size));
    left_.remove_prefix(size);
    return text;
  }

  /// Reads what follows "<" up to the end of the element, without recursion.
  xml_element element() {
    std::vector<xml_element> open;
    open.push_back(startTag());
    for (;;) {
      open.back().text += content();
      if (!take("</")) {
        need("<");
        open.push_back(startTag());
        continue;
      }
      need(open.back().name);
      need(">");
      xml_element closed = std::move(open.back());
      open.pop_back();
      if (open.empty()) {
        return closed;
      }
      open.back().children.push_back(std::move(closed));
      open.back().text.clear();
    }
  }

  xml_element startTag() {
    xml_element element;
    element.name = name();
    while (take(" ")) {
      const std::string attribute = name();
      need("=\"");
      require(element.attributes.emplace(attribute, attributeValue()).second, "a second attribute");
      need("\"");
    }
    need(">");
    return element;
  }

  std::string attributeValue() {
    std::string text;
    while (!left_.empty() && left_.front() != '"') {
      require(left_.front() != '<', "markup in an attribute");
      const bool is_white = left_.front() == '\n' || left_.front() == '\t' || left_.front() == '\r';
      const std::string character = nextCharacter();
      text += is_white ? " " : character;
    }
    return text;
  }

  std::string content() {
    std::string text;
    while (!left_.empty() && left_.front() != '<') {
      require(!left_.starts_with("]]>"), "the end of a section that did not begin");
      if (take("\r")) {
        take("\n");
        text += '\n';
      } else {
        text += nextCharacter();
      }
    }
    return text;
  }

  std::string nextCharacter() {
    if (take("&")) {
      return reference();
    }
    const auto [code, size] = decoded(left_);
    require(size != 0 && isXmlCharacter(code), "a character that XML forbids");
    left_.remove_prefix(size);
    return encoded(code);
  }

  std::string reference() {
    constexpr std::pair<std::string_view, char> ENTITIES[] = {
        {"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};
    for (const auto& [entity, character] : ENTITIES) {
      if (take(entity)) {
        return {character};
      }
    }
    need("#");
    std::uint32_t code = 0;
    const auto result = std::from_chars(left_.data(), left_.data() + left_.size(), code);
    require(result.ec == std::errc() && isXmlCharacter(code), "a reference to no character");
    left_.remove_prefix(static_cast<std::size_t>(result.ptr - left_.data()));
    need(";");
    return encoded(code);
  }

  std::string_view left_;
};

}  // namespace

xml_element readXml(std::string_view document) {
  return XmlReader(document).document();
}

std::string xmlCharacters(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const auto [code, size] = decoded(text);
    const std::uint32_t character = size == 0 ? static_cast<unsigned char>(text[0]) : code;
    if (isXmlCharacter(character)) {
      out += encoded(character);
    }
    text.remove_prefix(size == 0 ? 1 : size);
  }
  return out;
}

}  // namespace spx::fuzz
