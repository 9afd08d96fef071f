#include "console/tables/cell_readings.h"

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "console/base/quoted_text.h"
#include "console/tables/column_titles.h"
#include "console/tables/other_words.h"
#include "console/tables/table_writer.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr std::size_t SAMPLES = 3;
constexpr std::size_t SAMPLED_ROWS = 1000;

constexpr reading_kind SEXES = {"sex in other words", "sexes in other words"};
constexpr reading_kind WORDS = {"word of another language", "words of other languages"};
constexpr reading_kind MARKED = {"text marked with an apostrophe", "texts marked with an apostrophe"};
constexpr reading_kind LIVING = {"unknown date of death, read as a living animal",
                                 "unknown dates of death, read as living animals"};
constexpr reading_kind DECIMALS = {"number with a decimal comma", "numbers with a decimal comma"};

/// How a date was read; null for a form that is taken literally or refused.
const reading_kind* kindOf(DATE_FORM form) {
  static constexpr reading_kind KINDS[] = {
      {"date with the year first", "dates with the year first"},
      {"date with the day first", "dates with the day first"},
      {"date with the month first", "dates with the month first"},
      {"date with the name of the month", "dates with the name of the month"},
      {"month with its year", "months with their year"},
      {"date with 00 for unknown parts", "dates with 00 for unknown parts"},
      {"approximate date", "approximate dates"},
      {"decade", "decades"},
      {"spreadsheet day number", "spreadsheet day numbers"},
      {"unknown date", "unknown dates"},
  };
  const auto number = static_cast<std::size_t>(form);
  return number == 0 || form >= DATE_FORM::AMBIGUOUS ? nullptr : &KINDS[number - 1];
}

enum class COLUMN : std::uint8_t { TEXT, WORD, DATE, SEX_WORD, NUMBER, USER };

COLUMN columnOf(std::string_view field) {
  if (field.ends_with("date")) {
    return COLUMN::DATE;
  }
  if (field == "sex") {
    return COLUMN::SEX_WORD;
  }
  const bool is_number = field == "fcoef" || field.starts_with("g_") || field == "latitude" || field == "longitude";
  return is_number ? COLUMN::NUMBER : hasOtherWords(field) ? COLUMN::WORD : COLUMN::TEXT;
}

/// A quick test for YYYY-MM-DD and YYYY: nearly all dates have these forms, which need no conversion.
bool looksPlain(std::string_view text) {
  return text.empty() || (text.size() == 10 && text[4] == '-' && text[7] == '-' && text[8] != '0') || text.size() == 4;
}

/// "1,5", "-0,25"
bool isDecimalComma(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos || comma + 1 == text.size()) {
    return false;
  }
  const std::string_view whole = text.substr(text.front() == '-' ? 1 : 0, comma - (text.front() == '-' ? 1 : 0));
  constexpr std::string_view DIGITS = "0123456789";
  return !whole.empty() && whole.find_first_not_of(DIGITS) == std::string_view::npos &&
         text.find_first_not_of(DIGITS, comma + 1) == std::string_view::npos;
}

/// What the values of a whole column prove.
class ColumnFacts {
 public:
  void add(std::string_view text) {
    const DATE_ORDER order = provenOrder(text);
    day_first_ |= order == DATE_ORDER::DAY_FIRST;
    month_first_ |= order == DATE_ORDER::MONTH_FIRST;
    ambiguous_ += readDate(text, DATE_ORDER::UNKNOWN).form == DATE_FORM::AMBIGUOUS ? 1 : 0;
    if (isMissing(text)) {
      return;
    }
    if (isDecimalComma(text)) {
      constexpr std::size_t THOUSANDS = 4;
      has_decimals_ |= text.size() - text.find(',') != THOUSANDS;
    } else {
      only_numbers_ &= parseReal<double>(text).has_value();
    }
  }

  /// The proven order of day and month; UNKNOWN when the dates prove nothing or contradict each other.
  DATE_ORDER order() const {
    if (day_first_ == month_first_) {
      return DATE_ORDER::UNKNOWN;
    }
    return day_first_ ? DATE_ORDER::DAY_FIRST : DATE_ORDER::MONTH_FIRST;
  }
  bool isContradictory() const { return day_first_ && month_first_; }
  std::size_t ambiguous() const { return ambiguous_; }
  /// Whether its commas are decimal commas; "1,234" alone proves nothing, since it may mean a thousand.
  bool hasDecimalCommas() const { return only_numbers_ && has_decimals_; }

 private:
  bool day_first_ = false;
  bool month_first_ = false;
  std::size_t ambiguous_ = 0;
  bool only_numbers_ = true;
  bool has_decimals_ = false;
};

class CellReadings : public RowSource {
 public:
  CellReadings(std::unique_ptr<RowSource> rows, table_source::opener reopen, const reading_options& options,
               bool is_csv, TableNotes& notes)
      : rows_(std::move(rows)), reopen_(std::move(reopen)), options_(options), is_csv_(is_csv), notes_(notes) {
    titles_ = rows_->titles();
    fields_ = rows_->fields();
    columns_.assign(titles_.size(), COLUMN::USER);
    names_.resize(titles_.size());
  }

  void settleColumns(std::span<const table_field> fields, const ColumnTitles& columns) override {
    rows_->settleColumns(fields, columns);
    notes_.columns.clear();
    for (const std::string& title : titles_) {
      notes_.columns.push_back({title, {}, {}});
    }
    for (std::size_t field = 0; field < fields.size(); ++field) {
      const std::size_t column = columns.column(field);
      if (column != ColumnTitles::NONE) {
        columns_[column] = columnOf(fields[field].name);
        names_[column] = fields[field].name;
        notes_.columns[column].field = fields[field].name;
      }
    }
  }

  bool next() override {
    if (!rows_->next()) {
      return false;
    }
    cells_ = rows_->row();
    changed_ = false;
    texts_.clear();
    const std::size_t count = std::min(cells_.size(), columns_.size());
    for (std::size_t column = 0; column < count; ++column) {
      readCell(column);
    }
    if (sampled_ < SAMPLED_ROWS) {
      ++sampled_;
      addSamples(count);
    }
    return true;
  }

  std::size_t line() const override { return rows_->line(); }
  std::size_t animalRow() const override { return rows_->animalRow(); }

 private:
  void readOtherWord(std::size_t column, std::string_view text) {
    if (const char* word = otherWord(names_[column], text); word != nullptr) {
      replace(column, word, WORDS);
    }
  }

  void readCell(std::size_t column) {
    const std::string_view text = cells_[column];
    if (is_csv_ && text.starts_with('\'') && looksLikeFormula(text)) {
      return replace(column, std::string(text.substr(1)), MARKED);
    }
    switch (columns_[column]) {
      case COLUMN::DATE:
        return looksPlain(text) ? void() : readDateCell(column, text);
      case COLUMN::WORD:
        return readOtherWord(column, text);
      case COLUMN::SEX_WORD:
        return text.size() <= 1 && text != "?" ? readSexLetter(column, text) : readSexCell(column, text);
      case COLUMN::NUMBER:
        return isDecimalComma(text) ? replaceComma(column, text) : void();
      case COLUMN::USER:
        return isDecimalComma(text) && factsOf(column).hasDecimalCommas() ? replaceComma(column, text) : void();
      case COLUMN::TEXT:
        return;
    }
  }

  void readDateCell(std::size_t column, std::string_view text) {
    date_reading reading = readDate(text, options_.dates);
    if (reading.form == DATE_FORM::AMBIGUOUS) {
      reading = readDate(text, orderOf(column, text));
    } else if (options_.dates != DATE_ORDER::UNKNOWN) {
      checkOrder(column, text);
    }
    const bool is_death = notes_.columns[column].field == "death_date";
    const reading_kind* kind = is_death && reading.form == DATE_FORM::UNKNOWN ? &LIVING : kindOf(reading.form);
    if (kind != nullptr && reading.text != text) {
      replace(column, reading.text, *kind);
    }
  }

  DATE_ORDER orderOf(std::size_t column, std::string_view text) {
    const DATE_ORDER order = factsOf(column).order();
    if (order != DATE_ORDER::UNKNOWN) {
      return order;
    }
    const ColumnFacts& facts = factsOf(column);
    const std::string which = "column " + quotedText(titles_[column]) + ": ";
    const std::string example = "dates such as " + quotedText(text);
    const std::string remedy = "; use --dates day-first or --dates month-first";
    if (facts.isContradictory()) {
      throw TableError(line(), which + "some dates have the day first, others the month, so " + example +
                                   " could be either; correct them");
    }
    throw TableError(line(), which + (facts.ambiguous() > 1 ? std::to_string(facts.ambiguous()) + " " : "") + example +
                                 " could have the day or the month first" + otherColumns() + remedy);
  }

  /// What the other columns of dates prove.
  std::string otherColumns() const {
    for (std::size_t column = 0; column < facts_.size(); ++column) {
      if (columns_[column] == COLUMN::DATE && facts_[column].order() != DATE_ORDER::UNKNOWN) {
        return " (column " + quotedText(titles_[column]) + " has the " +
               (facts_[column].order() == DATE_ORDER::DAY_FIRST ? "day" : "month") + " first)";
      }
    }
    return {};
  }

  void checkOrder(std::size_t column, std::string_view text) {
    const DATE_ORDER proven = provenOrder(text);
    if (proven != DATE_ORDER::UNKNOWN && proven != options_.dates) {
      const bool day_first = options_.dates == DATE_ORDER::DAY_FIRST;
      throw TableError(line(), "column " + quotedText(titles_[column]) + ": " + quotedText(text) + " has the " +
                                   (day_first ? "month" : "day") + " first, contrary to --dates " +
                                   (day_first ? "day-first" : "month-first"));
    }
  }

  void readSexLetter(std::size_t column, std::string_view text) {
    constexpr std::string_view FEMALE_IN_GERMAN = "wW";
    if (!text.empty() && FEMALE_IN_GERMAN.find(text.front()) != std::string_view::npos) {
      replace(column, getEnumName(SEX::FEMALE), SEXES);
    }
  }

  void readSexCell(std::size_t column, std::string_view text) {
    const auto sex = parseSex(text);
    if (sex && !isSameWord(text, getEnumName(*sex)) && !isUnknown(text)) {
      replace(column, getEnumName(*sex), SEXES);
    }
  }

  void replaceComma(std::size_t column, std::string_view text) {
    std::string number(text);
    std::replace(number.begin(), number.end(), ',', '.');
    replace(column, std::move(number), DECIMALS);
  }

  void replace(std::size_t column, std::string text, const reading_kind& kind) {
    notes_.count(kind, cells_[column], text);
    if (!changed_) {
      changed_ = true;
      row_.assign(cells_.begin(), cells_.end());
      cells_ = row_;
    }
    row_[column] = texts_.emplace_back(std::move(text));
  }

  void addSamples(std::size_t count) {
    for (std::size_t column = 0; column < count; ++column) {
      std::vector<std::string>& samples = notes_.columns[column].samples;
      const std::string_view text = rows_->row()[column];
      if (samples.size() < SAMPLES && !text.empty() &&
          std::find(samples.begin(), samples.end(), text) == samples.end()) {
        samples.emplace_back(text);
      }
    }
  }

  /// Reads the whole table at the first call. If the table cannot be opened again, nothing is proven.
  const ColumnFacts& factsOf(std::size_t column) {
    if (facts_.empty()) {
      facts_.resize(titles_.size());
      const std::unique_ptr<RowSource> again = reopen_ ? reopen_() : nullptr;
      while (again && again->next()) {
        const std::size_t count = std::min(again->cells(), facts_.size());
        for (std::size_t each = 0; each < count; ++each) {
          if (columns_[each] == COLUMN::DATE || columns_[each] == COLUMN::USER) {
            facts_[each].add((*again)[each]);
          }
        }
      }
    }
    return facts_[column];
  }

  std::unique_ptr<RowSource> rows_;
  table_source::opener reopen_;
  reading_options options_;
  bool is_csv_;
  TableNotes& notes_;
  std::vector<COLUMN> columns_;
  std::vector<std::string_view> names_;  ///< of their fields
  std::vector<ColumnFacts> facts_;
  std::size_t sampled_ = 0;
  bool changed_ = false;
  std::vector<std::string_view> row_;  ///< the cells, when some of them were converted
  std::deque<std::string> texts_;      ///< the converted texts
};

}  // namespace

std::unique_ptr<RowSource> readCells(std::unique_ptr<RowSource> rows, table_source::opener reopen,
                                     const reading_options& options, bool is_csv, TableNotes& notes) {
  return std::make_unique<CellReadings>(std::move(rows), std::move(reopen), options, is_csv, notes);
}

}  // namespace spx::console
