#include "console/output/table_options.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/base/natural_order.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/output/table_workbook.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

std::vector<std::string> namesOf(const Table& table) {
  std::vector<std::string> names;
  for (const table_column& column : table.columns()) {
    names.push_back(column.name);
  }
  return names;
}

[[noreturn]] void refuseColumn(const Table& table, const char* option, const std::string& name) {
  std::string list;
  for (const std::string& known : namesOf(table)) {
    list += (list.empty() ? "" : ", ") + known;
  }
  throw UsageError(std::string(option) + ": there is no column " + quotedText(name) + suggestion(name, namesOf(table)) +
                   "\nThe columns are: " + list);
}

/// By its name, or by the title that people see.
std::optional<std::size_t> findColumn(const Table& table, std::string_view name) {
  for (std::string table_column::*word : {&table_column::name, &table_column::title}) {
    for (std::size_t which = 0; which < table.columns().size(); ++which) {
      if (isSameWord(table.columns()[which].*word, name)) {
        return which;
      }
    }
  }
  return std::nullopt;
}

bool isMissing(const Cell& cell) {
  const auto* text = std::get_if<std::string>(&cell.get());
  return cell.isMissing() || (text != nullptr && text->empty());
}

/// A name without the "-" before it, which means descending order.
std::string unsignedName(const std::string& name) {
  return name.substr(name.starts_with('-') ? 1 : 0);
}

std::size_t columnOf(const Table& table, const char* option, const std::string& name) {
  if (const auto found = findColumn(table, name)) {
    return *found;
  }
  refuseColumn(table, option, name);
}

/// Finds the end of the next name in a list: the comma after the longest text that names a column, since
/// titles of user-defined fields may contain commas; otherwise the first comma.
std::size_t endOfName(const Table& table, const std::string& text, std::size_t begin) {
  std::size_t end = text.size();
  while (true) {
    const std::string name = text.substr(begin, end - begin);
    const std::size_t comma = name.rfind(',');
    if (comma == std::string::npos || findColumn(table, name) || findColumn(table, unsignedName(name))) {
      return end;
    }
    end = begin + comma;
  }
}

std::vector<std::string> listed(const Table& table, const std::vector<std::string>& typed) {
  std::vector<std::string> names;
  for (const std::string& text : typed) {
    for (std::size_t begin = 0; begin <= text.size();) {
      const std::size_t end = endOfName(table, text, begin);
      names.push_back(text.substr(begin, end - begin));
      begin = end + 1;
    }
  }
  return names;
}

struct natural_comparison {
  template <typename A, typename B>
  int operator()(const A&, const B&) const {
    return 0;  // cells of one column are of one type
  }
  int operator()(const std::string& a, const std::string& b) const { return compareNaturally(a, b); }
  int operator()(const known_date& a, const known_date& b) const { return compare(a.day, b.day); }
  int operator()(std::int64_t a, std::int64_t b) const { return compare(a, b); }
  int operator()(double a, double b) const { return compare(a, b); }
  int operator()(std::int64_t a, double b) const { return compare(static_cast<double>(a), b); }
  int operator()(double a, std::int64_t b) const { return compare(a, static_cast<double>(b)); }
  int operator()(bool a, bool b) const { return compare(a, b); }
  template <typename T>
  static int compare(T a, T b) {
    return a < b ? -1 : a > b ? 1 : 0;
  }
};

void sortBy(std::vector<std::size_t>& rows, const Table& table, std::size_t column, bool descending) {
  struct keyed_row {
    Cell key;
    std::size_t row;
  };
  std::vector<keyed_row> keyed;
  keyed.reserve(rows.size());
  for (const std::size_t row : rows) {
    keyed.push_back({table.cell(row, column), row});
  }
  std::stable_sort(keyed.begin(), keyed.end(), [descending](const keyed_row& a, const keyed_row& b) {
    if (isMissing(a.key) || isMissing(b.key)) {
      return !isMissing(a.key) && isMissing(b.key);
    }
    const int order = std::visit(natural_comparison{}, a.key.get(), b.key.get());
    return descending ? order > 0 : order < 0;
  });
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = keyed[i].row;
  }
}

/// A condition on one column, as typed after `--where`.
class Condition {
 public:
  Condition(const Table& table, const std::string& text);
  bool holds(const Cell& cell) const;
  std::size_t column() const { return column_; }

 private:
  std::string shown(const std::string& text) const { return shown_ == nullptr ? text : shown_(text); }

  void splitText(const Table& table, const std::string& text);
  void readValue(const table_column& column);
  /// Negative, 0 or positive when the value lies below, within or above the value asked for.
  int compare(const Cell& cell) const;

  std::size_t column_ = 0;
  std::string operator_;
  std::string value_;
  std::string (*shown_)(const std::string& text) = nullptr;  ///< how people see the cells
  double number_ = 0;
  double last_number_ = 0;  ///< end of the range, since a year or a month means all its days
};

std::string_view operatorAt(const std::string& text, std::size_t at) {
  for (const std::string_view each : {"!=", "<=", ">=", "=", "<", ">"}) {
    if (text.compare(at, each.size(), each) == 0) {
      return each;
    }
  }
  return {};
}

/// Takes the longest column name that is followed by an operator, since titles of user-defined fields
/// may contain operators.
void Condition::splitText(const Table& table, const std::string& text) {
  for (std::size_t at = text.size(); at-- > 0;) {
    operator_ = operatorAt(text, at);
    const auto column = operator_.empty() ? std::nullopt : findColumn(table, text.substr(0, at));
    if (column) {
      column_ = *column;
      value_ = text.substr(at + operator_.size());
      return;
    }
  }
  const std::size_t end = text.find_first_of("!=<>");
  if (end == std::string::npos) {
    throw UsageError("--where: " + quotedText(text) + " is not FIELD=VALUE");
  }
  refuseColumn(table, "--where", text.substr(0, end));
}

void Condition::readValue(const table_column& column) {
  const auto refuse = [&](const char* wanted) {
    throw UsageError("--where: " + column.name + ": " + quotedText(value_) + " is not " + wanted);
  };
  if (column.kind == COLUMN_KIND::DATE) {
    const auto date = parseDate(value_);
    if (!date) {
      refuse("a date (YYYY, YYYY-MM or YYYY-MM-DD)");
    }
    number_ = date->day;
    last_number_ = lastDayOf(*date);
  } else if (column.kind != COLUMN_KIND::TEXT && column.kind != COLUMN_KIND::FLAG) {
    const bool is_percent = value_.ends_with("%");
    const auto number = parseReal<double>(is_percent ? value_.substr(0, value_.size() - 1) : value_);
    if (!number) {
      refuse("a number");
    }
    number_ = last_number_ = is_percent ? *number / 100 : *number;
  } else if (column.kind == COLUMN_KIND::FLAG) {
    const bool is_yes = isSameWord(value_, "yes") || isSameWord(value_, "true");
    if (!is_yes && !isSameWord(value_, "no") && !isSameWord(value_, "false")) {
      refuse("yes or no");
    }
    number_ = last_number_ = is_yes ? 1 : 0;
  }
}

Condition::Condition(const Table& table, const std::string& text) {
  splitText(table, text);
  shown_ = table.columns()[column_].shown;
  value_ = shown(value_);
  if (!value_.empty()) {
    readValue(table.columns()[column_]);
  }
}

int Condition::compare(const Cell& cell) const {
  struct {
    const Condition& condition;
    int operator()(std::monostate) const { return 0; }
    int operator()(const std::string& text) const {
      const std::string seen = condition.shown(text);
      return isSameWord(seen, condition.value_) ? 0 : compareNaturally(seen, condition.value_);
    }
    int operator()(const known_date& date) const { return (*this)(static_cast<double>(date.day)); }
    int operator()(double number) const {
      return number < condition.number_ ? -1 : number > condition.last_number_ ? 1 : 0;
    }
    int operator()(std::int64_t number) const { return (*this)(static_cast<double>(number)); }
    int operator()(bool flag) const { return (*this)(flag ? 1.0 : 0.0); }
  } const visitor{*this};
  return std::visit(visitor, cell.get());
}

bool Condition::holds(const Cell& cell) const {
  const bool is_missing = isMissing(cell);
  if (value_.empty() || is_missing) {
    const bool is_equal = value_.empty() && is_missing;
    return operator_ == "=" ? is_equal : operator_ == "!=" && !is_equal;
  }
  const int order = compare(cell);
  if (operator_ == "=" || operator_ == "!=") {
    return (order == 0) == (operator_ == "=");
  }
  const bool is_equal = order == 0 && operator_.size() == 2;
  return is_equal || (operator_.front() == '<' ? order < 0 : order > 0);
}

void addLimit(CLI::App& app, std::optional<std::size_t>& limit) {
  app.add_option_function<std::string>(
         "--limit",
         [&limit](const std::string& text) {
           std::size_t number = 0;
           const char* end = text.data() + text.size();
           const auto result = std::from_chars(text.data(), end, number);
           if (result.ec != std::errc() || result.ptr != end) {
             throw UsageError("--limit: " + quotedText(text) + " must be a whole number of at least 0");
           }
           limit = number;
         },
         "Show only this many rows, from the first")
      ->type_name("COUNT");
}

}  // namespace

void addFormatOptions(CLI::App& app, table_options& options) {
  addFormatOption(app, options.format);
  addResultOptions(app, options.output);
}

void addTableOptions(CLI::App& app, table_options& options) {
  addFormatOptions(app, options);
  const auto add_list = [&app](const char* name, std::vector<std::string>& list, const char* type, const char* help) {
    app.add_option(name, list, help + std::string("; may be repeated"))
        ->type_name(type)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
  };
  add_list("--columns", options.columns, "NAME,...", "Show these columns, in this order");
  add_list("--sort", options.sort, "NAME,...", "Sort by these columns; -NAME from the largest");
  add_list("--where", options.where, "FIELD=VALUE", "Show only these rows; also !=, <, <=, >, >=");
  addLimit(app, options.limit);
}

table_part chosenPart(const Table& table, const table_options& options) {
  table_part part = wholeTable(table, options.format);
  if (!options.columns.empty()) {
    part.columns.clear();
    for (const std::string& name : listed(table, options.columns)) {
      part.columns.push_back(columnOf(table, "--columns", name));
    }
  }
  for (const std::string& text : options.where) {
    const Condition condition(table, text);
    std::erase_if(part.rows, [&](std::size_t row) { return !condition.holds(table.cell(row, condition.column())); });
  }
  // Sorts by the last name first: the sorts are stable, so the first name decides.
  const std::vector<std::string> keys = listed(table, options.sort);
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
    const bool descending = key->starts_with('-') && !findColumn(table, *key);
    sortBy(part.rows, table, columnOf(table, "--sort", descending ? unsignedName(*key) : *key), descending);
  }
  if (options.limit && *options.limit < part.rows.size()) {
    part.beyond_limit = part.rows.size() - *options.limit;
    part.rows.resize(*options.limit);
  }
  return part;
}

void showTable(const Table& table, const table_options& typed) {
  table_options options = typed;
  options.format = formatOfFile(typed.format, typed.output.file, true);
  const table_part part = chosenPart(table, options);
  if (isXlsx(options.output.file)) {
    return writeTableWorkbook(table, part, options.output);
  }
  ResultOutput output(options.output, options.format == OUTPUT_FORMAT::TEXT);
  switch (options.format) {
    case OUTPUT_FORMAT::TEXT:
      writeText(output.stream(), table, part, output.width());
      break;
    case OUTPUT_FORMAT::CSV:
      writeCsv(output.stream(), table, part);
      break;
    case OUTPUT_FORMAT::JSON:
      writeJson(output.stream(), table, part);
      break;
  }
  output.finish();
}

}  // namespace spx::console
