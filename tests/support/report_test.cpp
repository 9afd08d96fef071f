#include "spx/support/csv_report.h"
#include "spx/support/xml_report.h"

#include "tests/support/temporary_home.h"

namespace qs_lib {
template <class Number>
concept IsCell = requires(CsvReport& table, Number value) {
  table.cell(value, true);
};
static_assert(IsCell<int> && !IsCell<double> && !IsCell<float>, "a real number needs a number of digits");

class Reports : public TemporaryHome {
 protected:
  void open(Report& report) {
    report.setFileName("~/report.txt");
    ASSERT_TRUE(report.fileOpen());
  }

  std::string written() { return contentOf(at("report.txt")); }
};

TEST_F(Reports, XmlElementsNestAndAreContinuedByAppending) {
  XmlReport xml;
  xml.openRoot("LOST");
  xml.createTag("LOST", "the file is closed");
  for (int run = 0; run < 2; ++run) {
    xml.setAppend(false);
    open(xml);
    xml.declaration("UTF-8", "yes");
    xml.styleSheet("/a.xsl");
    xml.openRoot("ANALYSIS");
    xml.openTag("VIEW", "system", "s\"<&'\n");
    xml.createTag("FILTER", "set", "Sex", "a \"b\" <c> & d");
    xml.createTag("EMPTY", "");
    xml.closeTag("VIEW");
    EXPECT_TRUE(xml.fileClose());
    xml.closeTag("LOST");
    xml.setAppend(true);
    ASSERT_TRUE(xml.fileOpen());
    xml.openTag("FOOTER");
    xml.closeTag("FOOTER");
    xml.closeRoot();
    EXPECT_TRUE(xml.fileClose());
    EXPECT_EQ(written(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\n"
              "<?xml-stylesheet type=\"text/xsl\" href=\"/a.xsl\"?>\n"
              "<ANALYSIS>\n"
              "  <VIEW system=\"s&quot;&lt;&amp;&apos;&#10;\">\n"
              "    <FILTER set=\"Sex\">a \"b\" &lt;c&gt; &amp; d</FILTER>\n"
              "    <EMPTY></EMPTY>\n"
              "  </VIEW>\n"
              "  <FOOTER>\n"
              "  </FOOTER>\n"
              "</ANALYSIS>\n");
  }
}

TEST_F(Reports, XmlTextIsAlwaysValidUtf8) {
  struct text_case {
    const char *text, *expected, *why;
  };
  constexpr text_case CASES[] = {
      {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x90\xBE", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x90\xBE", "UTF-8"},
      {"J\xE4ger", "J\xC3\xA4ger", "Latin-1"},
      {"\xC3", "\xC3\x83", "cut off"},
      {"\xC0\xAF", "\xC3\x80\xC2\xAF", "overlong"},
      {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80", "surrogate"},
      {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80", "beyond the last character"},
      {"\xEF\xBF\xBF.\xEF\xBF\xBE.\xEF\xBF\xBD", "..\xEF\xBF\xBD", "no characters"},
      {"a\x01\x1F\tb\nc", "a\tb\nc", "control characters"},
      {"a\rb\r\nc", "a&#13;b&#13;\nc", "readers make a bare CR a line feed"},
  };
  for (const auto& [text, expected, why] : CASES) {
    std::string out;
    appendXmlText(out, text, false);
    EXPECT_EQ(out, expected) << why;
  }
}

TEST_F(Reports, DeclaredTableSeparatesItsCells) {
  {
    CsvReport csv;
    csv.cell("lost", true);
    open(csv);
    csv.writeHeader("ID|SIRE NAME|F|G");
    for (const char* id : {"001", "a|b", "a\"b", "O'Hara", "#5", "a\nb", "a\rb", " a", "a ", ""}) {
      csv.cell(id, true);
      csv.cell("plain text; 1,5", true);
      csv.cell(0.123456, 5, true);
      csv.cell(-7, false);
      csv.stream() << "\n";
    }
  }
  std::string expected = "ID|SIRE NAME|F|G\n";
  for (const char* id :
       {"001", "\"a|b\"", "\"a\"\"b\"", "\"O'Hara\"", "\"#5\"", "\"a\nb\"", "\"a\rb\"", "\" a\"", "\"a \"", ""}) {
    expected += id + std::string("|plain text; 1,5|0.12346|-7\n");
  }
  EXPECT_EQ(written(), expected) << "the destructor has closed the file";
}

TEST_F(Reports, FreeTableLeavesTheSeparatorsToTheCaller) {
  CsvReport csv;
  csv.separator = '\t';
  open(csv);
  for (const char* value : {"DAM", "a|b", "a\tb"}) {
    csv.cell(value, true);
    csv.stream() << csv.separator;
  }
  csv.stream() << "\n";
  EXPECT_TRUE(csv.fileClose());
  EXPECT_EQ(written(), "DAM\ta|b\t\"a\tb\"\t\n");
}
}  // namespace qs_lib
