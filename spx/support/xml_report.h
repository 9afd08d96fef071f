#pragma once

#include <string>
#include <string_view>

#include "spx/support/export.h"
#include "spx/support/report.h"

namespace qs_lib {
/// Writes an XML document, one element per line, with two blanks per level. The caller must balance
/// the tags: every openTag() needs its closeTag(), in reverse order.
///
/// Texts and attribute values may contain any bytes: markup is escaped, characters that XML forbids
/// are dropped, and bytes that are not UTF-8 are read as Latin-1. Names are written unchanged. Calls
/// while the file is closed do nothing.
class SPX_EXPORT XmlReport : public Report {
 public:
  XmlReport();
  ~XmlReport() override;

  /// Writes the XML declaration, with a blank before its end.
  void declaration(const std::string& encoding, const std::string& standalone);

  /// Writes the link to a style sheet, without a blank before its end.
  void styleSheet(const std::string& href);

  /// @{
  /// Opens or closes an element on a line of its own.
  void openTag(const std::string& name);
  void openTag(const std::string& name, const std::string& attribute, const std::string& value);
  void closeTag(const std::string& name);
  /// @}

  /// @{
  /// Writes an element with its text.
  void createTag(const std::string& name, const std::string& text);
  void createTag(const std::string& name, const std::string& attribute, const std::string& value,
                 const std::string& text);
  /// @}

  /// Opens the root element at column 0 and stores its name.
  void openRoot(const std::string& name);

  /// Closes the element that openRoot() opened.
  void closeRoot();

 private:
  void openElement(const std::string& tag);
  void writeIndented(const std::string& line);

  std::string root_name_;
  int nesting_ = 0;
};

/// Appends the text as XML content, CR as a reference; with in_attribute, quotes, TAB and line
/// feeds are escaped too.
SPX_EXPORT void appendXmlText(std::string& out, std::string_view text, bool in_attribute);
}  // namespace qs_lib
