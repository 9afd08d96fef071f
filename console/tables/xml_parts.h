#pragma once

#include <memory>
#include <string>
#include <string_view>

struct zip;

namespace spx::console {

/// The attributes of an XML element, found by their names without a prefix.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** attributes) : attributes_(attributes) {}

  /// The value; empty where the element does not have the attribute.
  std::string_view operator[](std::string_view name) const;

  /// A count such as `number-columns-repeated`.
  /// @param fallback  the value where it is missing, or not a number
  std::size_t number(std::string_view name, std::size_t fallback) const;

 private:
  const char** attributes_;  ///< names and values in turn
};

/// Hears the elements of an XML file in their order. Names come without prefixes.
class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  virtual void start(std::string_view name, const XmlAttributes& attributes) = 0;
  virtual void end(std::string_view) {}
  virtual void text(std::string_view) {}
};

/// The XML files packed in a workbook. Throws Failure for what is damaged.
class XmlParts {
 public:
  /// @param content  the workbook; must outlive the object
  explicit XmlParts(const std::string& content);

  bool has(const std::string& name) const;

  /// Unpacks and reads a file without holding it as a whole. Throws what the handler throws, and Failure for a part
  /// that is not there, not what was packed, or not valid XML. Files with a DTD are refused: no workbook has one.
  void parse(const std::string& name, XmlHandler& handler) const;

 private:
  std::unique_ptr<zip, void (*)(zip*)> archive_;
};

}  // namespace spx::console
