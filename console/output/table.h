#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "spx/core/enumerations.h"
#include "spx/core/master_data.h"
#include "spx/support/julian_date.h"

#include "console/base/known_date.h"
#include "console/output/output_format.h"

/// The results of a command as a table, which is shown to people or written for scripts.
///
///     Table table({{"id", "ID"},
///                  {.name = "mk", .title = "Mean kinship", .kind = COLUMN_KIND::REAL, .decimals = 4,
///                   .help = "average kinship with the living animals, itself included"}});
///     for (const position which : living) {
///       table.addRow({Animals.records[which].stud_id, mean_kinship[which]});  // NaN is a missing value
///     }
///     table.notes.push_back("Gene diversity 0.9312");
///     showTable(table, options);  // console/output/table_options.h: selects, sorts, pages
namespace spx::console {

enum class COLUMN_KIND : std::uint8_t {
  TEXT,
  INTEGER,
  REAL,     ///< people see it with `decimals` digits, scripts the shortest text that is read back as the same number
  DATE,     ///< people see it as precisely as it is known, scripts as YYYY-MM-DD
  PERCENT,  ///< a share: 0.25 is 25 % to people and 0.25 to scripts
  FLAG      ///< yes or no; true or false for scripts
};

enum class ALIGNMENT : std::uint8_t { BY_KIND, LEFT, RIGHT };

/// A column of a table.
struct table_column {
  std::string name;   ///< for scripts and options; never changes
  std::string title;  ///< for people; it may be broken at blanks
  COLUMN_KIND kind = COLUMN_KIND::TEXT;
  int decimals = 3;                          ///< of REAL and PERCENT
  std::string help = {};                     ///< its meaning, shown in a line below the table; empty for none
  bool in_text = true;                       ///< whether people see it when they choose no columns
  ALIGNMENT alignment = ALIGNMENT::BY_KIND;  ///< numbers to the right, all else to the left
  std::string group = {};                    ///< the JSON object that holds the value; empty for none
  std::string key = {};                      ///< its name in that object
  /// Converts a text to what people see; null when that is the text itself.
  std::string (*shown)(const std::string& text) = nullptr;
};

/// The value of a cell. A default-constructed cell is missing, and so are NaN, day 0 and a null text.
class Cell {
 public:
  using value = std::variant<std::monostate, std::string, std::int64_t, double, known_date, bool>;

  Cell() = default;
  Cell(std::string text) : value_(std::move(text)) {}         // NOLINT(google-explicit-constructor)
  Cell(std::string_view text) : value_(std::string(text)) {}  // NOLINT(google-explicit-constructor)
  Cell(const char* text) {                                    // NOLINT(google-explicit-constructor)
    if (text != nullptr) {
      value_ = std::string(text);
    }
  }
  /// A number of any type; a single-precision one keeps its own short text (1.3, not 1.29999995).
  template <typename Number>
  requires std::is_arithmetic_v<Number> Cell(Number number) {  // NOLINT(google-explicit-constructor)
    if constexpr (std::is_same_v<Number, bool>) {
      value_ = number;
    } else if constexpr (std::is_integral_v<Number>) {
      value_ = static_cast<std::int64_t>(number);
    } else {
      setReal(number);
    }
  }
  Cell(const known_date& date) {  // NOLINT(google-explicit-constructor)
    if (date.day != 0) {
      value_ = date;
    }
  }
  /// The date of an event.
  Cell(const move_data& event) : Cell(known_date{event.date, event.accuracy, event.range}) {}  // NOLINT

  bool isMissing() const { return std::holds_alternative<std::monostate>(value_); }
  const value& get() const { return value_; }

 private:
  void setReal(double number);
  void setReal(float number);

  value value_;
};

/// Columns and rows. The rows are stored in the table, or computed when they are shown; see setRows().
class Table {
 public:
  explicit Table(std::vector<table_column> columns) : columns_(std::move(columns)) {}

  /// Adds a row with a cell for each column; cells that are left out are missing.
  void addRow(std::vector<Cell> cells);

  /// Computes the cells when they are needed instead of storing them, for listings of a million animals. `read`
  /// must stay valid as long as the table.
  void setRows(std::size_t count, std::function<Cell(std::size_t row, std::size_t column)> read);

  std::size_t rows() const { return count_; }
  const std::vector<table_column>& columns() const { return columns_; }
  Cell cell(std::size_t row, std::size_t column) const;

  std::string heading;             ///< the line above the table that people see
  std::vector<std::string> notes;  ///< lines below the table that people see
  std::string one_row;             ///< the noun for a row in the count below the table: "animal"; empty for no count
  std::string many_rows;           ///< likewise: "animals"
  std::string if_empty;            ///< what people see instead of a table without rows
  bool is_record = false;          ///< one row that is shown a line per column; a single object in JSON

 private:
  std::vector<table_column> columns_;
  std::vector<std::vector<Cell>> cells_;
  std::function<Cell(std::size_t, std::size_t)> read_;
  std::size_t count_ = 0;
};

/// What is shown of a table: columns and rows by their numbers, in order.
struct table_part {
  std::vector<std::size_t> columns;
  std::vector<std::size_t> rows;
  std::size_t beyond_limit = 0;  ///< how many more rows were chosen than are shown
};

/// All rows, with the columns that people see, or all columns for scripts.
table_part wholeTable(const Table& table, OUTPUT_FORMAT format);

/// A cell as people see it: without control characters, dates as precisely as they are known ("1964", "Apr 2002").
std::string cellText(const Cell& cell, const table_column& column);

/// The table for people, in lines of at most `width` terminal columns where possible: texts are wrapped inside
/// their columns, never cut.
void writeText(std::ostream& out, const Table& table, const table_part& part, std::size_t width = 80);

/// The table for scripts: a line of names and a line per row, commas, a missing value as an empty cell. Texts keep
/// their bytes.
/// @param for_spreadsheet  an apostrophe stands before texts that a spreadsheet would take for a formula
void writeCsv(std::ostream& out, const Table& table, const table_part& part, bool for_spreadsheet = false);

/// A cell as the tables for scripts have it; empty for a missing value.
std::string scriptText(const Cell& cell);

/// An array with an object per row, one a line, or one object for a record; a missing value is null. Texts that are
/// not UTF-8 are taken as Latin-1.
void writeJson(std::ostream& out, const Table& table, const table_part& part);

}  // namespace spx::console
