#include "console/tables/workbook_writer.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>
#include <xlsxwriter.h>

#include "spx/support/julian_date.h"

#include "console/base/display_text.h"
#include "console/base/failure.h"
#include "console/tables/number_format.h"

namespace spx::console {
namespace {

constexpr std::size_t MOST_ROWS = 1048576;
constexpr std::size_t MOST_COLUMNS = 16384;
constexpr std::size_t NARROWEST = 6;
constexpr std::size_t WIDEST = 40;

/// The serial number of a day in spreadsheets, for days from March 1900 on; 0 for earlier days.
double serialOf(qs_lib::day_number day) {
  constexpr qs_lib::day_number ORIGIN = 2415019;  // 1899-12-30
  constexpr double MARCH_1900 = 61;
  const double serial = static_cast<double>(day) - static_cast<double>(ORIGIN);
  return serial < MARCH_1900 ? 0 : serial;
}

/// Whether a text survives being stored as a number: no unnecessary zeros, no "+", not too many
/// digits.
bool isPlainNumber(std::string_view text, double& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && std::isfinite(number) &&
         numberText(number, {}, false) == text;
}

}  // namespace

struct WorkbookWriter::book {
  explicit book(const std::string& path) {
    lxw_workbook_options options{};
    options.constant_memory = LXW_FALSE;
    workbook = ::workbook_new_opt(path.c_str(), &options);
    if (workbook == nullptr) {
      throw Failure("there is not enough memory");
    }
    bold = ::workbook_add_format(workbook);
    ::format_set_bold(bold);
    text = format("@");
    day = format("yyyy-mm-dd");
    month = format("yyyy-mm");
    year = format("yyyy");
  }
  book(const book&) = delete;
  book& operator=(const book&) = delete;
  ~book() {
    if (workbook != nullptr) {
      ::lxw_workbook_free(workbook);
    }
  }

  lxw_format* format(const char* code) const {
    lxw_format* made = ::workbook_add_format(workbook);
    ::format_set_num_format(made, code);
    return made;
  }

  lxw_workbook* workbook;
  lxw_worksheet* sheet = nullptr;
  lxw_format* bold;
  lxw_format* text;
  lxw_format* day;
  lxw_format* month;
  lxw_format* year;
};

WorkbookWriter::WorkbookWriter(std::string file) : name_(std::move(file)), file_(name_) {
  errno = 0;
  if (!file_.create()) {
    throw Failure(name_ + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
  }
  book_ = std::make_unique<book>(file_.writePath());
}

WorkbookWriter::~WorkbookWriter() = default;

void WorkbookWriter::beginSheet(const std::string& name, std::span<const std::string> titles,
                                std::vector<SHEET_COLUMN> columns) {
  endSheet();
  if (titles.size() > MOST_COLUMNS) {
    throw Failure(name_ + ": a sheet has no room for " + std::to_string(titles.size()) + " columns; export as csv");
  }
  columns_ = std::move(columns);
  widths_.assign(titles.size(), NARROWEST);
  row_ = 0;
  book_->sheet = ::workbook_add_worksheet(book_->workbook, name.c_str());
  ::worksheet_freeze_panes(book_->sheet, 1, 0);
  for (std::size_t column = 0; column < titles.size(); ++column) {
    widths_[column] = std::clamp(titles[column].size() + 2, NARROWEST, WIDEST);
    check(::worksheet_write_string(book_->sheet, 0, static_cast<lxw_col_t>(column), utf8Text(titles[column]).c_str(),
                                   book_->bold));
  }
}

void WorkbookWriter::endSheet() {
  if (book_->sheet == nullptr) {
    return;
  }
  for (std::size_t column = 0; column < widths_.size(); ++column) {
    const auto number = static_cast<lxw_col_t>(column);
    // Formats the column as text, so that values typed into it later stay text and an ID keeps its zeros.
    lxw_format* format = columns_[column] == SHEET_COLUMN::TEXT ? book_->text : nullptr;
    ::worksheet_set_column(book_->sheet, number, number, static_cast<double>(widths_[column]), format);
  }
  if (!widths_.empty()) {
    ::worksheet_autofilter(book_->sheet, 0, 0, static_cast<lxw_row_t>(row_),
                           static_cast<lxw_col_t>(widths_.size() - 1));
  }
}

void WorkbookWriter::addRow(std::span<const std::string_view> cells) {
  if (++row_ >= MOST_ROWS) {
    throw Failure(name_ + ": a sheet has no room for more than 1,048,575 rows; export as csv");
  }
  for (std::size_t column = 0; column < std::min(cells.size(), columns_.size()); ++column) {
    if (!cells[column].empty()) {
      widths_[column] = std::clamp(cells[column].size() + 1, widths_[column], std::max(widths_[column], WIDEST));
      addCell(column, cells[column]);
    }
  }
}

void WorkbookWriter::addCell(std::size_t column, std::string_view text) {
  const bool is_typed = (columns_[column] == SHEET_COLUMN::DATE && addDate(column, text)) ||
                        (columns_[column] == SHEET_COLUMN::NUMBER && addNumber(column, text));
  if (!is_typed) {
    addText(column, text);
  }
}

bool WorkbookWriter::addDate(std::size_t column, std::string_view text) {
  lxw_format* const formats[] = {book_->year, book_->month, book_->day};
  constexpr NUMBER_FORM FORMS[] = {NUMBER_FORM::YEAR, NUMBER_FORM::MONTH, NUMBER_FORM::DAY};
  const std::size_t form = text.size() == 4 ? 0 : text.size() == 7 ? 1 : 2;
  const double serial = serialOf(qs_lib::msToDay(qs_lib::dateToJulian(std::string(text))));
  // Only a date that is read back as the same text; a time of day would be lost.
  if (serial == 0 || numberText(serial, {FORMS[form]}, false) != text) {
    return false;
  }
  check(::worksheet_write_number(book_->sheet, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(column), serial,
                                 formats[form]));
  return true;
}

bool WorkbookWriter::addNumber(std::size_t column, std::string_view text) {
  double number = 0;
  if (!isPlainNumber(text, number)) {
    return false;
  }
  check(::worksheet_write_number(book_->sheet, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(column), number,
                                 nullptr));
  return true;
}

void WorkbookWriter::addText(std::size_t column, std::string_view text) {
  check(::worksheet_write_string(book_->sheet, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(column),
                                 utf8Text(text).c_str(), book_->text));
}

void WorkbookWriter::check(int error) {
  if (error == LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED) {
    throw Failure(name_ + ": row " + std::to_string(row_ + 1) +
                  " has a text of more than 32,767 characters, too long for a sheet; export as csv");
  }
  if (error != LXW_NO_ERROR) {
    throw Failure(name_ + ": " + ::lxw_strerror(static_cast<lxw_error>(error)));
  }
}

void WorkbookWriter::finish() {
  endSheet();
  errno = 0;
  const lxw_error error = ::workbook_close(std::exchange(book_->workbook, nullptr));
  if (error != LXW_NO_ERROR) {
    throw Failure(name_ + ": cannot be written" +
                  (errno == 0 ? std::string(": ") + ::lxw_strerror(error) : std::string(": ") + std::strerror(errno)));
  }
  errno = 0;
  if (!file_.commit()) {
    throw Failure(name_ + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
  }
}

}  // namespace spx::console
