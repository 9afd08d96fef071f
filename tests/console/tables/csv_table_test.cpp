#include "console/tables/csv_table.h"

#include "tests/support/temporary_home.h"

namespace spx::console {
namespace {

class CsvTableTest : public TemporaryHome {
 protected:
  /// The rows as "line:cell/cell ", the titles first; an exception as "!line reason".
  std::string rows(const std::string& content) {
    writeContent(at("t.csv"), content);
    return rowsOf(at("t.csv"));
  }

  static std::string rowsOf(const std::string& file) {
    std::string text;
    try {
      CsvTable table(file);
      for (const std::string& title : table.titles()) {
        text += title + "/";
      }
      while (table.next()) {
        text += " " + std::to_string(table.line()) + ":";
        for (std::size_t cell = 0; cell < table.cells(); ++cell) {
          text += std::string(table[cell]) + "/";
        }
      }
    } catch (const TableError& error) {
      text += " !" + std::to_string(error.line()) + " " + error.what();
    }
    return text;
  }
};

struct table_case {
  std::string content;
  const char* rows;
};

TEST_F(CsvTableTest, ReadsWhatProgramsWrite) {
  const table_case cases[] = {
      {"a,b\n1,2\n", "a/b/ 2:1/2/"},
      {"a,b\n1,2", "a/b/ 2:1/2/"},
      {"\xEF\xBB\xBF\"a\";b\r\n1;2,5\r\n3;4\r\n", "a/b/ 2:1/2,5/ 3:3/4/"},
      {"a\tb\n1\t\n", "a/b/ 2:1//"},
      {"a|b,c|d\n1|2|3\n", "a/b,c/d/ 2:1/2/3/"},
      {"\"a,b,c\";d;e\n1;2;3\n", "a,b,c/d/e/ 2:1/2/3/"},
      {"\n\n a , b \n\n 1 , \" 2 \" \n", "a/b/ 5:1/ 2 /"},
      {"a,b\n\"x\n\n\"\"y\"\"\",1\n2,3\n", "a/b/ 2:x\n\n\"y\"/1/ 5:2/3/"},
      {"a,b\r1,2\r\r3,4\r", "a/b/ 2:1/2/ 4:3/4/"},
      {"a,b\n,\n \n1,2\n", "a/b/ 4:1/2/"},
      {"a,b\n1\n1,2,3\n", "a/b/ 2:1/ 3:1/2/3/"},
      {"a\n1\n", "a/ 2:1/"},
      {"a,b\n \"1\" ,\t\"\"\t\r\"x\ry\",\"\"\"\"\n\"\"\n3,\"4\"", "a/b/ 2:1// 3:x\ry/\"/ 5:3/4/"},
      {"a,\xE9\xFF\n\x01,2\n", "a/\xC3\xA9\xC3\xBF/ 2:\x01/2/"},
      {"sep=;\r\na,b;c\r\n1;2\r\n", "a,b/c/ 3:1/2/"},
      {"Studbook\na;b,c;d\n1;2;3\n", "Studbook/ 2:a/b,c/d/ 3:1/2/3/"},
  };
  for (const auto& [content, expected] : cases) {
    SCOPED_TRACE(content);
    EXPECT_EQ(rows(content), expected);
  }
}

TEST_F(CsvTableTest, RefusesABrokenRowAfterReadingThoseBefore) {
  using namespace std::string_literals;
  const table_case cases[] = {
      {"", " !0 is empty: a header line is needed"},
      {"\n\r\n", " !0 is empty: a header line is needed"},
      {"a,b\n1,2\n3,\"4\n5,6\n", "a/b/ 2:1/2/ !3 has a quote that is not closed"},
      {"a,b\n1,2\n3,4\"5\n", "a/b/ 2:1/2/ !3 has a stray quote (quote the whole cell and double the quotes in it)"},
      {"a,b\n1,\"2\"x\n", "a/b/ !2 has a stray quote (quote the whole cell and double the quotes in it)"},
      {"a,b\n1,2\n\0,3\n"s, "a/b/ 2:1/2/ !3 contains a NUL byte: it is not a text table"},
  };
  for (const auto& [content, expected] : cases) {
    SCOPED_TRACE(content);
    EXPECT_EQ(rows(content), expected);
  }
  EXPECT_EQ(rowsOf(at("none.csv")), " !0 cannot be opened: No such file or directory");
  EXPECT_EQ(rowsOf(home), " !0 cannot be read: Is a directory");
  EXPECT_NE(rows("a\n\"" + std::string(65U << 20U, 'x')).find("!2 has a row that is too long"), std::string::npos);
  EXPECT_NE(rows("a\n1" + std::string(1U << 20U, ',')).find("!2 has a row that is too long"), std::string::npos);
}

// The file is read in pieces of 256 KiB: CRLF, quotes and line breaks meet every border in turn.
TEST_F(CsvTableTest, RowsDoNotDependOnWhereThePiecesEnd) {
  constexpr std::size_t PIECE = 256 * 1024;
  const std::string tail = "\r\n\"p\r\nq\",\"\"\"r\"\r\n\r\nlast,1\r\n";
  for (std::size_t back = 0; back <= tail.size(); ++back) {
    SCOPED_TRACE(back);
    const std::string filler(PIECE - back - 6, 'x');
    EXPECT_EQ(rows("a,b\n1," + filler + tail), "a/b/ 2:1/" + filler + "/ 3:p\r\nq/\"r/ 6:last/1/");
  }
}

}  // namespace
}  // namespace spx::console
