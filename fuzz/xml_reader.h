#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace spx::fuzz {

/// An element of a document. Text between child elements is dropped.
struct xml_element {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::string text;
  std::vector<xml_element> children;
};

/// Reads a document in UTF-8 and gives its root. Line breaks are made line feeds in texts and
/// blanks in attributes, as XML demands of every reader. Input that is not well-formed ends the
/// process.
xml_element readXml(std::string_view document);

/// The text as XML content can hold it: bytes that are not UTF-8 are read as Latin-1, and characters
/// that XML forbids are dropped.
std::string xmlCharacters(std::string_view text);

}  // namespace spx::fuzz
