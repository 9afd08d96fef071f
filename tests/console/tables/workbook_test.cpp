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
  /// The sheets of a workbook with their titles and rows; or why it cannot be read.
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

  static std::string ods(const std::string& rows) {
    return zipFile(
        {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"},
         {"content.xml", R"(<?xml version="1.0"?><office:document-content)"
                         R"( xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0")"
                         R"( xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0")"
                         R"( xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"><office:body>)"
                         R"(<office:spreadsheet><table:table table:name="Tiere">)" +
                             rows + "</table:table></office:spreadsheet></office:body></office:document-content>"}});
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

TEST_F(WorkbookTest, OpenDocumentsHaveTypedCellsRepeatedRowsAndGaps) {
  const auto cell = [](const std::string& type, const std::string& text) {
    return "<table:table-cell office:value-type=\"" + type + "\"><text:p>" + text + "</text:p></table:table-cell>";
  };
  const std::string titles =
      "<table:table-row>" + cell("string", "ID") + cell("string", "Geboren") + "</table:table-row>";
  const std::string row =
      cell("float\" office:value=\"7", "7") + cell("date\" office:date-value=\"1998-05-12", "12.5.98");
  table("a.ods", ods(titles + "<table:table-row table:number-rows-repeated=\"2\"/><table:table-row>" + row +
                     "</table:table-row>"));
  EXPECT_EQ(sheetsOf(at("a.ods")), "Tiere: ID Geboren\n4|7|1998-05-12\n");
}

TEST_F(WorkbookTest, WhatIsNotAWorkbookIsRefused) {
  EXPECT_EQ(sheetsOf(table("a.zip", zipFile({{"a.txt", "id"}}))), "error: not an .xlsx or .ods workbook");
  EXPECT_NE(sheetsOf(table("a.xls", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")).find("old .xls kind"), std::string::npos);
  EXPECT_FALSE(isWorkbook(table("a.csv", "id\n1\n")));
  EXPECT_FALSE(isWorkbook(home));
  const std::string many =
      "<table:table-cell office:value-type=\"string\" table:number-columns-repeated=\"16384\">"
      "<text:p>x</text:p></table:table-cell>";
  const std::string flood = "<table:table-row table:number-rows-repeated=\"1048576\">" + many + "</table:table-row>";
  EXPECT_EQ(sheetsOf(table("b.ods", ods(flood))).substr(0, 6), "error:");
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
