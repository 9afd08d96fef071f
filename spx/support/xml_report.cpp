#include "spx/support/xml_report.h"

namespace qs_lib {
namespace {
constexpr int BLANKS_PER_LEVEL = 2;

std::string startTag(const std::string& name) {
  return "<" + name;
}

std::string startTag(const std::string& name, const std::string& attribute, const std::string& value) {
  std::string tag = startTag(name) + " " + attribute + "=\"";
  appendXmlText(tag, value, true);
  return tag + "\"";
}

std::string content(const std::string& name, const std::string& text) {
  std::string element = ">";
  appendXmlText(element, text, false);
  return element + "</" + name + ">";
}
}  // namespace

XmlReport::XmlReport() = default;

XmlReport::~XmlReport() = default;

void XmlReport::declaration(const std::string& encoding, const std::string& standalone) {
  writeLine("<?xml version=\"1.0\" encoding=\"" + encoding + "\" standalone=\"" + standalone + "\" ?>");
}

void XmlReport::styleSheet(const std::string& href) {
  // No blank before the end, unlike in the declaration. Kept on purpose.
  writeLine("<?xml-stylesheet type=\"text/xsl\" href=\"" + href + "\"?>");
}

void XmlReport::openTag(const std::string& name) {
  openElement(startTag(name));
}

void XmlReport::openTag(const std::string& name, const std::string& attribute, const std::string& value) {
  openElement(startTag(name, attribute, value));
}

void XmlReport::closeTag(const std::string& name) {
  if (isOpen() && nesting_ > 0) {
    --nesting_;
  }
  writeIndented("</" + name + ">");
}

void XmlReport::createTag(const std::string& name, const std::string& text) {
  writeIndented(startTag(name) + content(name, text));
}

void XmlReport::createTag(const std::string& name, const std::string& attribute, const std::string& value,
                          const std::string& text) {
  writeIndented(startTag(name, attribute, value) + content(name, text));
}

void XmlReport::openRoot(const std::string& name) {
  root_name_ = name;
  nesting_ = 0;
  openTag(name);
}

void XmlReport::closeRoot() {
  closeTag(root_name_);
}

void XmlReport::openElement(const std::string& tag) {
  writeIndented(tag + ">");
  if (isOpen()) {
    ++nesting_;
  }
}

void XmlReport::writeIndented(const std::string& line) {
  write(std::string(static_cast<std::size_t>(nesting_ * BLANKS_PER_LEVEL), ' '));
  writeLine(line);
}
}  // namespace qs_lib
