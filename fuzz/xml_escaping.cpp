// Documents written and read back: every three lines are an element's text, the value of an
// attribute, and the text of an element within another that bears the attribute.
#include "spx/support/xml_report.h"

#include "fuzz/fuzz_support.h"
#include "fuzz/xml_reader.h"

namespace spx::fuzz {
namespace {

void writeDocument(qs_lib::XmlReport& report, const std::vector<std::string>& lines) {
  report.setFileName(ramDirectory() + "/document.xml");
  require(report.fileOpen(), "a document cannot be opened");
  report.declaration("UTF-8", "yes");
  report.styleSheet("style.xsl");
  report.openRoot("ROOT");
  for (std::size_t i = 0; i + 2 < lines.size(); i += 3) {
    report.createTag("PLAIN", lines[i]);
    report.createTag("BOTH", "value", lines[i + 1], lines[i]);
    report.openTag("OUTER", "value", lines[i + 1]);
    report.createTag("INNER", lines[i + 2]);
    report.closeTag("OUTER");
  }
  report.closeRoot();
  require(report.fileClose(), "a document is not written");
}

void requireText(const xml_element& element, const std::string& name, const std::string& text) {
  require(element.name == name && element.text == xmlCharacters(text), "a text comes back changed");
}

void requireValue(const xml_element& element, const std::string& value) {
  require(element.attributes.at("value") == xmlCharacters(value), "a value comes back changed");
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  const std::vector<std::string> lines = linesOf(asText(data, size));
  qs_lib::XmlReport report;
  writeDocument(report, lines);
  const xml_element root = readXml(contentOf(report.getFileName()));
  require(root.name == "ROOT" && root.children.size() == lines.size() / 3 * 3, "elements are lost");
  for (std::size_t i = 0; i + 2 < lines.size(); i += 3) {
    requireText(root.children[i], "PLAIN", lines[i]);
    requireText(root.children[i + 1], "BOTH", lines[i]);
    requireValue(root.children[i + 1], lines[i + 1]);
    requireValue(root.children[i + 2], lines[i + 1]);
    require(root.children[i + 2].children.size() == 1, "an inner element is lost");
    requireText(root.children[i + 2].children[0], "INNER", lines[i + 2]);
  }
  return 0;
}
