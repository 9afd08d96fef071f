#include "console/tables/workbook.h"

#include <random>

#include "console/base/failure.h"
#include "console/base/isolated_run.h"
#include "console/tables/workbook_writer.h"
#include "tests/console/console_fixture.h"
#include "tests/console/tables/zip_file.h"

namespace spx::console {
namespace {

class WorkbookTest : public ConsoleTest {
 protected:
  /// The sheets of a workbook with their titles and rows; or the reason why it cannot be read.
  static std::string sheetsOf(const std::string& file) {
    try {
      const auto workbook = Workbook::read(file);
      std::string text;
      for (std::size_t sheet = 0; sheet < workbook->sheetNames().size(); ++sheet) {
        const auto rows = Workbook::openSheet(workbook, sheet);
        text += workbook->sheetNames()[sheet] + ":";
        for (const std::string& title : rows->titles()) {
          text += " " + title;
        }
        while (rows->next()) {
          text += "\n" + std::to_string(rows->line());
          for (const std::string_view cell : rows->row()) {
            text += "|" + std::string(cell);
          }
        }
        text += "\n";
      }
      return text;
    } catch (const TableError& error) {
      return std::string("error: ") + error.what();
    }
  }

  std::string sample() {
    WorkbookWriter writer(at("a.xlsx"));
    const std::vector<std::string> titles = {"id", "birth_date", "weight"};
    writer.beginSheet("animals", titles, {SHEET_COLUMN::TEXT, SHEET_COLUMN::DATE, SHEET_COLUMN::NUMBER});
    for (const auto& row : std::vector<std::vector<std::string_view>>{
             {"0042", "1998-05-12", "45.5"},
             {"=1+1", "1998-05", "007"},
             {"x\xC3\xA9<&", "1998", "1e3"},
             {"\xE9", "~1990", "-0.25"},
             {"5", "1850-01-02", ""},
             {"6", "1998-05-12T10:30:00", "12345678901234567890"},
         }) {
      writer.addRow(row);
    }
    const std::vector<std::string> names = {"name"};
    writer.beginSheet("programs", names, {SHEET_COLUMN::TEXT});
    writer.finish();
    return at("a.xlsx");
  }

  /// An .ods workbook with the table "Tiere".
  /// @param styles  the automatic styles of the content
  static std::string ods(const std::string& rows, const std::string& styles = "") {
    return zipFile(
        {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"},
         {"content.xml", R"(<?xml version="1.0"?><office:document-content)"
                         R"( xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0")"
                         R"( xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0")"
                         R"( xmlns:number="urn:oasis:names:tc:opendocument:xmlns:datastyle:1.0")"
                         R"( xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0")"
                         R"( xmlns:calcext="urn:org:documentfoundation:names:experimental:calc:xmlns:calcext:1.0")"
                         R"( xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"><office:automatic-styles>)" +
                             styles + R"(</office:automatic-styles><office:body>)" +
                             R"(<office:spreadsheet><table:table table:name="Tiere">)" + rows +
                             "</table:table></office:spreadsheet></office:body></office:document-content>"}});
  }

  /// An .xlsx workbook with the sheet "Tiere", as programs other than spreadsheets write it: with as little as is
  /// needed.
  static std::string xlsx(const std::string& sheet, const std::string& texts = "", const std::string& formats = "",
                          const std::string& properties = "") {
    const std::string kind = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
    const auto relation = [&](const std::string& id, const std::string& type, const std::string& target) {
      return "<Relationship Id=\"" + id + "\" Type=\"" + kind + type + "\" Target=\"" + target + "\"/>";
    };
    const std::string list = "<Relationships>";
    std::vector<std::pair<std::string, std::string>> parts = {
        {"_rels/.rels", list + relation("1", "officeDocument", "/xl/workbook.xml") + "</Relationships>"},
        {"xl/workbook.xml", "<workbook xmlns:r=\"" + kind + "\"><workbookPr " + properties +
                                "/><sheets><sheet name=\"Tiere\" sheetId=\"1\" r:id=\"2\"/></sheets></workbook>"},
        {"xl/worksheets/a.xml", "<x:worksheet xmlns:x=\"urn:x\">" + sheet + "</x:worksheet>"}};
    std::string relations = relation("2", "worksheet", "worksheets/a.xml");
    if (!texts.empty()) {
      relations += relation("3", "sharedStrings", "texts.xml");
      parts.emplace_back("xl/texts.xml", "<sst>" + texts + "</sst>");
    }
    if (!formats.empty()) {
      relations += relation("4", "styles", "styles.xml");
      parts.emplace_back("xl/styles.xml", "<styleSheet>" + formats + "</styleSheet>");
    }
    parts.emplace_back("xl/_rels/workbook.xml.rels", list + relations + "</Relationships>");
    return zipFile(parts);
  }
};

TEST_F(WorkbookTest, CellsComeBackAsTheyWereWritten) {
  EXPECT_EQ(sheetsOf(sample()),
            "animals: id birth_date weight\n"
            "2|0042|1998-05-12|45.5\n"
            "3|=1+1|1998-05|007\n"
            "4|x\xC3\xA9<&|1998|1e3\n"
            "5|\xC3\xA9|~1990|-0.25\n"
            "6|5|1850-01-02|\n"
            "7|6|1998-05-12T10:30:00|12345678901234567890\n"
            "programs: name\n");
}

struct cell_case {
  const char* cell;
  const char* text;
  const char* why;
};

TEST_F(WorkbookTest, EveryKindOfXlsxCellIsRead) {
  const std::string texts = "<si><t>shared</t></si><si><r><t>ri</t></r><r><t>ch</t></r><rPh><t>no</t></rPh></si>";
  const std::string formats =
      "<numFmts><numFmt numFmtId=\"164\" formatCode=\"0000\"/><numFmt numFmtId=\"165\" formatCode=\"mmm\\ yyyy\"/>"
      "</numFmts><cellStyleXfs><xf numFmtId=\"14\"/></cellStyleXfs><cellXfs><xf numFmtId=\"0\"/><xf numFmtId=\"14\"/>"
      "<xf numFmtId=\"164\"/><xf numFmtId=\"165\"/></cellXfs>";
  const cell_case cases[] = {
      {"t='s'><x:v>0</x:v>", "shared", "a shared text"},
      {"t='s'><x:v>1</x:v>", "rich", "runs of formatted text, without their pronunciation"},
      {"t='inlineStr'><x:is><x:t>in</x:t></x:is>", "in", "a text in the cell itself"},
      {"t='inlineStr'><x:is><x:r><x:t>a</x:t></x:r><x:r><x:t>&amp;b</x:t></x:r></x:is>", "a&b", "with runs"},
      {"t='inlineStr'><x:is><x:t>a_x000D_b_x12_</x:t></x:is>", "a\rb_x12_", "an escaped character"},
      {"t='str'><x:f>A1&amp;\"x\"</x:f><x:v>1x</x:v>", "1x", "the result of a formula"},
      {"><x:f>1+1</x:f><x:v>2</x:v>", "2", "a number that is the result of a formula"},
      {"><x:f>1+1</x:f>", "", "a formula without a result"},
      {"t='b'><x:v>1</x:v>", "yes", "a truth value"},
      {"t='e'><x:v>#N/A</x:v>", "#N/A", "an error"},
      {"t='d' s='1'><x:v>1998-05-12T00:00:00</x:v>", "1998-05-12", "a date in words"},
      {"s='1'><x:v>35927</x:v>", "1998-05-12", "a date"},
      {"s='3'><x:v>35916</x:v>", "1998-05", "a date that shows its month"},
      {"s='2'><x:v>42</x:v>", "0042", "leading zeros"},
      {"s='9'><x:v>1e3</x:v>", "1000", "a format that does not exist"},
  };
  for (const auto& [cell, text, why] : cases) {
    SCOPED_TRACE(why);
    const std::string row =
        "<x:sheetData><x:row><x:c t='inlineStr'><x:is><x:t>ID</x:t></x:is></x:c></x:row><x:row><x:c " +
        std::string(cell) + "</x:c><x:c><x:v>7</x:v></x:c></x:row></x:sheetData>";
    EXPECT_EQ(sheetsOf(table("a.xlsx", xlsx(row, texts, formats))), "Tiere: ID\n2|" + std::string(text) + "|7\n");
  }
}

TEST_F(WorkbookTest, XlsxCellsStandWhereTheySay) {
  const std::string sheet =
      "<sheetData><row r='3'><c r='B3'><v>1</v></c><c r='D3'><v>2</v></c></row><row r='5'><c><v>3</v></c></row>"
      "<row><c r='AA6'><v>4</v></c></row></sheetData>"
      "<mergeCells><mergeCell ref='B3:B5'/><mergeCell ref='D3:E3'/><mergeCell ref='F9:F11'/></mergeCells>";
  EXPECT_EQ(sheetsOf(table("a.xlsx", xlsx(sheet))), "Tiere:  1  2\n4||1||\n5|3|1||\n6|||||||||||||||||||||||||||4\n");
  const std::string early = "<sheetData><row><c s='0'><v>7</v></c></row><row><c s='0'><v>100</v></c></row></sheetData>";
  const std::string formats = "<cellXfs><xf numFmtId=\"14\"/></cellXfs>";
  EXPECT_EQ(sheetsOf(table("a.xlsx", xlsx(early, "", formats, "date1904='1'"))), "Tiere: 1904-01-08\n2|1904-04-10\n");
}

TEST_F(WorkbookTest, EveryKindOfOdsCellIsRead) {
  const std::string styles =
      "<number:date-style style:name='M'><number:month number:style='long'/><number:year/></number:date-style>"
      "<number:date-style style:name='D'><number:year/><number:month/><number:day/></number:date-style>"
      "<number:number-style style:name='Z'><number:number number:decimal-places='0' number:min-integer-digits='4'/>"
      "</number:number-style><style:style style:name='month' style:family='table-cell' style:data-style-name='M'/>"
      "<style:style style:name='red' style:family='table-cell' style:parent-style-name='month'/>"
      "<style:style style:name='day' style:family='table-cell' style:data-style-name='D'/>"
      "<style:style style:name='zeros' style:family='table-cell' style:data-style-name='Z'/>";
  const cell_case cases[] = {
      {"office:value-type='string'><text:p>a</text:p>", "a", "a text"},
      {"office:value-type='string' office:string-value='b'>", "b", "a text in an attribute"},
      {"calcext:value-type='float' office:value-type='string'><text:p>a</text:p>", "a", "a type that is said twice"},
      {"office:value-type='string'><text:p>a<text:s text:c='2'/>b<text:span>c</text:span></text:p><text:p>d</text:p>",
       "a  bc\nd", "blanks, formats and lines"},
      {"office:value-type='string'><office:annotation><text:p>x</text:p></office:annotation><text:p>a</text:p>", "a",
       "a comment"},
      {"office:value-type='float' office:value='1.50'><text:p>1,50</text:p>", "1.5", "a number"},
      {"office:value-type='percentage' office:value='0.25'><text:p>25 %</text:p>", "0.25", "a share"},
      {"office:value-type='boolean' office:boolean-value='true'><text:p>WAHR</text:p>", "yes", "a truth value"},
      {"office:value-type='date' office:date-value='1998-05-12'><text:p>12.5.98</text:p>", "1998-05-12", "a date"},
      {"office:value-type='date' office:date-value='1998-05-12T00:00:00' table:style-name='day'>", "1998-05-12",
       "midnight"},
      {"office:value-type='date' office:date-value='1998-05-12T10:30:00'>", "1998-05-12T10:30:00", "a time of day"},
      {"office:value-type='date' office:date-value='1998-05-01' table:style-name='month'>", "1998-05",
       "a date that shows its month"},
      {"office:value-type='date' office:date-value='1998-05-01' table:style-name='red'>", "1998-05",
       "a style that has its format from another"},
      {"office:value-type='date' office:date-value='1998-05-02' table:style-name='month'>", "1998-05-02",
       "a day that a month hides"},
      {"office:value-type='date' office:date-value='1998-05-01' table:style-name='day'>", "1998-05-01", "a first day"},
      {"office:value-type='float' office:value='42' table:style-name='zeros'>", "0042", "leading zeros"},
  };
  for (const auto& [cell, text, why] : cases) {
    SCOPED_TRACE(why);
    const std::string row =
        "<table:table-row><table:table-cell office:value-type='string'><text:p>ID</text:p></table:table-cell>"
        "</table:table-row><table:table-row><table:table-cell " +
        std::string(cell) + "</table:table-cell></table:table-row>";
    EXPECT_EQ(sheetsOf(table("a.ods", ods(row, styles))), "Tiere: ID\n2|" + std::string(text) + "\n");
  }
}

TEST_F(WorkbookTest, OdsRowsAndCellsThatStandForSeveralAreAllRead) {
  const auto cell = [](const std::string& text, const std::string& more = "") {
    return "<table:table-cell office:value-type='string'" + more + "><text:p>" + text + "</text:p></table:table-cell>";
  };
  const std::string empty =
      "<table:table-row table:number-rows-repeated='1048000'><table:table-cell "
      "table:number-columns-repeated='16384'/></table:table-row>";
  const std::string rows =
      "<table:table-row>" + cell("a") + cell("b") + "</table:table-row>" +
      "<table:table-row table:number-rows-repeated='2'/>" + "<table:table-row table:number-rows-repeated='3'>" +
      cell("x", " table:number-columns-repeated='2'") + "</table:table-row>" + "<table:table-row>" +
      cell("m", " table:number-rows-spanned='2'") + cell("1") + "</table:table-row>" +
      "<table:table-row><table:covered-table-cell/>" + cell("2") + "</table:table-row>" + empty;
  EXPECT_EQ(sheetsOf(table("a.ods", ods(rows))), "Tiere: a b\n4|x|x\n5|x|x\n6|x|x\n7|m|1\n8|m|2\n");
}

TEST_F(WorkbookTest, WhatIsNotAWorkbookIsRefused) {
  EXPECT_EQ(sheetsOf(table("a.zip", zipFile({{"a.txt", "id"}}))), "error: not an .xlsx or .ods workbook");
  EXPECT_NE(sheetsOf(table("a.xls", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")).find("an old .xls workbook"),
            std::string::npos);
  EXPECT_FALSE(isWorkbook(table("a.csv", "id\n1\n")));
  EXPECT_FALSE(isWorkbook(home));
  const std::string many =
      "<table:table-cell office:value-type=\"string\" table:number-columns-repeated=\"16384\">"
      "<text:p>x</text:p></table:table-cell>";
  const std::string flood = "<table:table-row table:number-rows-repeated=\"1048576\">" + many + "</table:table-row>";
  EXPECT_EQ(sheetsOf(table("b.ods", ods(flood))).substr(0, 6), "error:");
  const struct {
    std::string content;
    const char* says;
  } cases[] = {
      {xlsx("<sheetData><row><c t='s'><v>0</v></c></row></sheetData>"), "the text of a cell is missing"},
      {xlsx("<sheetData><row><c r='1'><v>0</v></c></row></sheetData>"), "no valid address"},
      {xlsx("<sheetData><row r='1048577'><c><v>0</v></c></row></sheetData>"), "outside its sheet"},
      {xlsx("<sheetData><row><c><v>1,5</v></c></row></sheetData>"), "a number cannot be read"},
      {xlsx("<sheetData><row>"), "is damaged: "},
      {zipFile({{"_rels/.rels", "<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>"}}), "it has a DTD"},
      {zipFile({{"xl/workbook.bin", ""}}), ".xlsb kind"},
      {zipFile({{"content.xml", "x"}, {"META-INF/manifest.xml", "<manifest><encryption-data/></manifest>"}}),
       "has a password"},
      {zipFile({{"content.xml", "<a/>"}, {"META-INF/manifest.xml", "<m><file-entry full-path='styles.xml'/></m>"}}),
       "styles.xml is missing"},
      {ods("<table:table-row><table:table-cell office:value-type='float'/></table:table-row>"), "cannot be read"},
      {"PK\x03\x04", "is damaged"},
  };
  for (const auto& [content, says] : cases) {
    const std::string read = sheetsOf(table("b.xlsx", content));
    EXPECT_NE(read.find(says), std::string::npos) << read << " instead of " << says;
  }
}

TEST_F(WorkbookTest, DamagedFilesEndInTheWholeContentOrAMessage) {
  constexpr int MUTATIONS = 60;
  const std::string whole = contentOf(sample());
  const std::string cells = sheetsOf(at("a.xlsx"));
  std::mt19937 random(17);
  for (int mutation = 0; mutation < MUTATIONS; ++mutation) {
    std::string bytes = whole;
    if (mutation % 4 == 0) {
      bytes.resize(random() % bytes.size());
    } else {
      bytes[random() % bytes.size()] ^= static_cast<char>(1 + random() % 255);
    }
    const std::string read = sheetsOf(table("b.xlsx", bytes));
    EXPECT_TRUE(read.starts_with("error: ") || read == cells) << mutation << ": " << read;
  }
}

TEST(IsolatedRun, EndsWithTheOutputOrTheReason) {
  using output_function = std::function<void(std::string_view)>;
  const run_limits limits = {std::size_t{64} << 20U, 2, 1000};
  const auto result = [&](const std::function<void(const output_function&)>& work) {
    try {
      return runIsolated(limits, work);
    } catch (const Failure& failure) {
      return std::string("failure: ") + failure.what();
    }
  };
  const std::string damaged = "failure: is damaged, or too large to be read";
  EXPECT_EQ(result([](const output_function& output) { output("a"), output("b"); }), "ab");
  EXPECT_EQ(result([](const output_function& output) {
              output("a");
              throw Failure("the reason");
            }),
            "failure: the reason");
  EXPECT_EQ(result([](const output_function&) { std::abort(); }), damaged);
  EXPECT_EQ(result([](const output_function&) { throw 1; }), damaged);
  EXPECT_EQ(result([](const output_function& output) { output(std::string(100000, 'x')); }), damaged);
  EXPECT_EQ(result([](const output_function& output) {
              for (;;) {
                output("");
              }
            }),
            damaged);
}

}  // namespace
}  // namespace spx::console
