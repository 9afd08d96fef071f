#include "console/tables/csv_parser.h"

#include <algorithm>
#include <utility>

namespace spx::console {
namespace {

constexpr std::size_t PIECE = std::size_t{256} << 10;
// Far above any row of a studbook; keeps a quote that is never closed from filling the memory.
constexpr std::size_t LONGEST_ROW = std::size_t{64} << 20;
constexpr std::size_t MOST_CELLS = 65536;
constexpr std::size_t LONGEST_HEAD = std::size_t{64} << 10;
constexpr std::string_view SEPARATORS = ",;\t|";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr char STRAY_QUOTE[] = "has a stray quote (quote the whole cell and double the quotes in it)";
constexpr char TOO_LONG[] = "has a row that is too long (is a quote not closed?)";

}  // namespace

char CsvParser::separatorOf(std::string_view text) {
  std::size_t counts[SEPARATORS.size()] = {};
  bool quoted = false;
  for (const char letter : text.substr(0, LONGEST_HEAD)) {
    const bool line_end = letter == '\n' || letter == '\r';
    const bool has_any = std::any_of(counts, std::end(counts), [](std::size_t count) { return count != 0; });
    if (line_end && has_any && !quoted) {
      break;
    }
    quoted ^= letter == '"';
    const std::size_t which = SEPARATORS.find(letter);
    if (!quoted && which != std::string_view::npos) {
      ++counts[which];
    }
  }
  return SEPARATORS[static_cast<std::size_t>(std::max_element(counts, std::end(counts)) - counts)];
}

CsvParser::CsvParser(const std::string& file, const text_encoding& encoding) : reader_(file, encoding) {}

CsvRows CsvParser::nextRows() {
  do {
    readPiece();
  } while (rows_.size() == 0 && !rows_.isLast());
  return std::exchange(rows_, CsvRows());
}

// The incomplete row at the end of one piece is put in front of the next. For a long row each piece
// is as long as the part read so far, so that the time stays linear.
void CsvParser::readPiece() {
  std::vector<char>& text = rows_.text_;
  text.assign(begun_.begin(), begun_.end());
  const std::size_t wanted = std::max(PIECE, begun_.size());
  text.resize(begun_.size() + wanted);
  const std::size_t read = reader_.read(text.data() + begun_.size(), wanted);
  text.resize(begun_.size() + read);
  rows_.is_last_ = read < wanted;
  std::string_view rest(text.data(), text.size());
  if (first_) {
    begin(rest);
  }
  parse(rest);
}

void CsvParser::begin(std::string_view& text) {
  first_ = false;
  if (text.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK) {
    text.remove_prefix(BYTE_ORDER_MARK.size());
  }
  if (!takeSeparatorLine(text)) {
    separator_ = separatorOf(text);
  }
}

/// The line `sep=;` before all others, with which spreadsheets name the separator.
bool CsvParser::takeSeparatorLine(std::string_view& text) {
  constexpr std::size_t SIZE = 5;
  const bool is_one = text.size() > SIZE && (text.starts_with("sep=") || text.starts_with("SEP=")) &&
                      (text[SIZE] == '\n' || text[SIZE] == '\r');
  if (!is_one) {
    return false;
  }
  separator_ = text[SIZE - 1];
  text.remove_prefix(SIZE + (text.substr(SIZE).starts_with("\r\n") ? 2 : 1));
  ++line_;
  return true;
}

// Lines without quotes, which are nearly all of a large table, are cut at their separators.
void CsvParser::parse(std::string_view text) {
  const std::size_t nul = text.find('\0');
  at_end_ = rows_.is_last_ && nul == std::string_view::npos;
  std::string_view rest = text.substr(0, nul);
  std::size_t left_at_quote = std::string_view::npos;  // size of the rest from the next quote on
  while (!rest.empty() && !rows_.failure_) {
    if (left_at_quote > rest.size()) {
      const std::size_t quote = rest.find('"');
      left_at_quote = quote == std::string_view::npos ? 0 : rest.size() - quote;
    }
    if (!readPlainLine(rest, rest.size() - left_at_quote) && !readRow(rest)) {
      break;
    }
  }
  if (rows_.failure_) {
    return;
  }
  if (nul != std::string_view::npos) {
    return fail("contains a NUL byte: it is not a text table");
  }
  if (rest.size() > LONGEST_ROW) {
    return fail(TOO_LONG);
  }
  begun_.assign(rest);
}

// Takes a whole line that ends before the next quote. @return false when the text does not begin
// with such a line
bool CsvParser::readPlainLine(std::string_view& text, std::size_t quote) {
  const std::size_t end = text.substr(0, quote).find('\n');
  if (end == std::string_view::npos) {
    return false;
  }
  std::string_view line = text.substr(0, end);
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  if (line.find('\r') != std::string_view::npos) {
    return false;  // a lone CR also ends a line
  }
  addPlainCells(line);
  endRow();
  ++line_;
  text.remove_prefix(end + 1);
  return true;
}

std::string_view CsvParser::trimmed(std::string_view cell) const {
  const auto isBlank = [this](char letter) { return (letter == ' ' || letter == '\t') && letter != separator_; };
  while (!cell.empty() && isBlank(cell.front())) {
    cell.remove_prefix(1);
  }
  while (!cell.empty() && isBlank(cell.back())) {
    cell.remove_suffix(1);
  }
  return cell;
}

void CsvParser::addPlainCells(std::string_view line) {
  if (trimmed(line).empty()) {
    return;
  }
  const std::size_t most = rows_.cells_.size() + MOST_CELLS;
  for (std::size_t start = 0, end = 0; end != std::string_view::npos && rows_.cells_.size() <= most; start = end + 1) {
    end = line.find(separator_, start);
    rows_.cells_.push_back(trimmed(line.substr(start, end == std::string_view::npos ? end : end - start)));
  }
}

// Takes a row, with its line end, cell by cell. @return false, with the text unchanged, when the
// piece holds only a part of the row or the row cannot be read
bool CsvParser::readRow(std::string_view& text) {
  const std::size_t first_cell = rows_.cells_.size();
  std::string_view rest = text;
  bool goes_on = true;
  while (goes_on) {
    if (rows_.cells_.size() - first_cell > MOST_CELLS) {
      fail(TOO_LONG);
    }
    if (rows_.failure_ || !readCell(rest)) {
      rows_.cells_.resize(first_cell);
      return false;
    }
    goes_on = rest.starts_with(separator_);
    rest.remove_prefix(goes_on ? 1 : 0);
  }
  if (rest.size() < 2 && !at_end_) {
    rows_.cells_.resize(first_cell);
    return false;  // the line end is not complete
  }
  rest.remove_prefix(std::min<std::size_t>(rest.size(), rest.starts_with("\r\n") ? 2 : 1));
  const std::string_view row = text.substr(0, text.size() - rest.size());
  if (trimmed(row.substr(0, row.find_first_of("\r\n"))).empty()) {
    rows_.cells_.resize(first_cell);  // an empty line
  }
  endRow();
  const auto lines = std::count(row.begin(), row.end(), '\n');
  line_ += static_cast<std::size_t>(lines) + (row.ends_with('\r') ? 1 : 0);
  std::for_each(rows_.cells_.begin() + static_cast<std::ptrdiff_t>(first_cell), rows_.cells_.end(),
                [this](std::string_view& cell) { makeQuotesSingle(cell); });
  text = rest;
  return true;
}

// Takes a cell up to the separator or the line end. @return false when the piece does not hold its
// end, or when it cannot be read
bool CsvParser::readCell(std::string_view& rest) {
  const auto isEnd = [this](char letter) {
    return letter == separator_ || letter == '\r' || letter == '\n' || letter == '"';
  };
  const auto end = static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), isEnd) - rest.begin());
  if (end == rest.size() && !at_end_) {
    return false;
  }
  const std::string_view cell = trimmed(rest.substr(0, end));
  rest.remove_prefix(end);
  if (!rest.starts_with('"')) {
    rows_.cells_.push_back(cell);
    return true;
  }
  if (cell.empty()) {
    return readQuotedCell(rest);
  }
  fail(STRAY_QUOTE);
  return false;
}

// The same for a cell in quotes, which the text begins with.
bool CsvParser::readQuotedCell(std::string_view& rest) {
  std::size_t end = 1;
  for (;; end += 2) {
    end = rest.find('"', end);
    if (end == std::string_view::npos) {
      if (at_end_) {
        fail(rest.size() > LONGEST_ROW ? TOO_LONG : "has a quote that is not closed");
      }
      return false;
    }
    if (rest.substr(end + 1, 1) != "\"") {
      break;
    }
  }
  const std::size_t next = std::min(rest.find_first_not_of(separator_ == '\t' ? " " : " \t", end + 1), rest.size());
  if (next == rest.size() && !at_end_) {
    return false;
  }
  const std::string_view after = rest.substr(next, 1);
  if (!after.empty() && after[0] != separator_ && after[0] != '\r' && after[0] != '\n') {
    fail(STRAY_QUOTE);
    return false;
  }
  rows_.cells_.push_back(rest.substr(1, end - 1));
  rest.remove_prefix(next);
  return true;
}

// Only for complete rows: changes the text in place. Only quoted cells contain quotes.
void CsvParser::makeQuotesSingle(std::string_view& cell) {
  std::size_t quote = cell.find('"');
  if (quote == std::string_view::npos) {
    return;
  }
  char* const begin = rows_.text_.data() + (cell.data() - rows_.text_.data());
  char* end = begin + quote;
  while (quote != std::string_view::npos) {
    const std::size_t next = cell.find('"', quote + 2);
    const std::string_view piece = cell.substr(quote + 1, next == std::string_view::npos ? next : next - quote - 1);
    end = std::copy(piece.begin(), piece.end(), end);
    quote = next;
  }
  cell = {begin, static_cast<std::size_t>(end - begin)};
}

void CsvParser::endRow() {
  const std::size_t first = rows_.rows_.empty() ? 0 : rows_.rows_.back().first_cell + rows_.rows_.back().cells;
  const std::size_t cells = rows_.cells_.size() - first;
  if (cells > MOST_CELLS) {
    return fail(TOO_LONG);
  }
  if (cells != 0) {
    rows_.rows_.push_back({line_, first, cells});
  }
}

}  // namespace spx::console
