#include "console/tables/csv_parser.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

namespace spx::console {
namespace {

// Far above any row of a studbook; keeps a quote that is never closed from filling the memory.
constexpr std::size_t LONGEST_ROW = std::size_t{64} << 20;
constexpr std::size_t MOST_CELLS = 65536;
constexpr std::size_t FIRST_BLOCK = 4096;
constexpr std::size_t LONGEST_HEAD = std::size_t{64} << 10;
constexpr std::string_view SEPARATORS = ",;\t|";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

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

void CsvRows::settle() {
  texts_.reserve(cells_.size());
  for (const cell_place& place : cells_) {
    texts_.push_back(textOf(place));
  }
}

CsvParser::CsvParser(const std::string& file, const text_encoding& encoding) : file_(openText(file, encoding)) {
  if (!file_) {
    throw TableError(0, std::string("cannot be opened: ") + std::strerror(errno));
  }
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);
  constexpr unsigned char OPTIONS = CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL;
  if (csv_init(&csv_, OPTIONS) != 0) {
    throw std::bad_alloc();
  }
}

CsvParser::~CsvParser() {
  csv_free(&csv_);
}

CsvRows CsvParser::nextRows() {
  // A row of many chunks stays where it is until it is complete.
  do {
    readChunk();
  } while (rows_.size() == 0 && !rows_.isLast());
  CsvRows done = std::exchange(rows_, CsvRows());
  for (std::size_t cell = done.begunCell(); cell < done.cells_.size(); ++cell) {
    rows_.addCell(done.textOf(done.cells_[cell]));
  }
  done.settle();
  return done;
}

void CsvParser::readChunk() {
  std::vector<char>& chunk = rows_.chunk_;
  chunk.resize(CsvRows::CHUNK);
  chunk.resize(std::fread(chunk.data(), 1, chunk.size(), file_.get()));
  if (std::ferror(file_.get()) != 0) {
    return fail(0, std::string("cannot be read: ") + std::strerror(errno));
  }
  std::string_view text(chunk.data(), chunk.size());
  if (first_) {
    begin(text);
  }
  parse(text);
  if (chunk.size() < CsvRows::CHUNK && !rows_.failure_) {
    finish();
  }
}

void CsvParser::begin(std::string_view& chunk) {
  first_ = false;
  if (chunk.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK) {
    chunk.remove_prefix(BYTE_ORDER_MARK.size());
  }
  if (!takeSeparatorLine(chunk)) {
    separator_ = separatorOf(chunk);
  }
  csv_set_delim(&csv_, static_cast<unsigned char>(separator_));
}

/// The line `sep=;` before all others, by which spreadsheets tell each other.
bool CsvParser::takeSeparatorLine(std::string_view& chunk) {
  constexpr std::size_t SIZE = 5;
  const bool is_one = chunk.size() > SIZE && (chunk.starts_with("sep=") || chunk.starts_with("SEP=")) &&
                      (chunk[SIZE] == '\n' || chunk[SIZE] == '\r');
  if (!is_one) {
    return false;
  }
  separator_ = chunk[SIZE - 1];
  chunk.remove_prefix(SIZE + (chunk.substr(SIZE).starts_with("\r\n") ? 2 : 1));
  ++line_;
  return true;
}

void CsvParser::parse(std::string_view chunk) {
  const std::string_view text = chunk.substr(0, chunk.find('\0'));
  std::string_view rest = text;
  std::size_t quote = 0;
  while (!rest.empty() && !rows_.failure_) {
    const std::size_t at = text.size() - rest.size();
    if (quote <= at) {
      quote = std::min(text.find('"', at), text.size());
    }
    if (isBetweenRows()) {
      readPlainLines(rest, text.substr(at, quote - at));
    }
    if (!rest.empty()) {
      parseLine(rest);
    }
  }
  if (rows_.failure_) {
    return;
  }
  if (text.size() < chunk.size()) {
    return fail(rowLine(), "holds a NUL byte: it is no text table");
  }
  if (csv_get_buffer_size(&csv_) > LONGEST_ROW || rows_.other_.size() > LONGEST_ROW ||
      rows_.cells_.size() - rows_.begunCell() > MOST_CELLS) {
    fail(rowLine(), "has a row that is too long (is a quote not closed?)");
  }
}

// Cuts whole lines of the plain part, which is without quotes, at their separators, which is all
// that most lines of large tables need, several times as fast; stops at the first other line.
void CsvParser::readPlainLines(std::string_view& text, std::string_view plain) {
  std::size_t start = 0;
  for (std::size_t end = plain.find('\n'); end != std::string_view::npos; end = plain.find('\n', start)) {
    std::string_view line = plain.substr(start, end - start);
    const bool is_crlf = line.ends_with('\r');
    if (is_crlf) {
      line.remove_suffix(1);
    }
    if (line.find('\r') != std::string_view::npos) {
      break;  // a line end, too
    }
    addPlainCells(line);
    if (is_crlf) {
      endLine('\r');
    }
    endLine('\n');
    start = end + 1;
  }
  text.remove_prefix(start);
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
  row_line_ = line_;
  after_return_ = false;
  for (std::size_t start = 0, end = 0; end != std::string_view::npos; start = end + 1) {
    end = line.find(separator_, start);
    const std::string_view cell = trimmed(line.substr(start, end == std::string_view::npos ? end : end - start));
    const auto begin = static_cast<std::size_t>(cell.data() - rows_.chunk_.data());
    rows_.cells_.push_back({begin, cell.size()});
  }
}

// One line, or what the chunk holds of it, through libcsv.
void CsvParser::parseLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = end == std::string_view::npos ? text : text.substr(0, end + 1);
  // By default libcsv lengthens its cell by 128 bytes at a time: a huge cell would be copied over
  // and over.
  csv_set_blk_size(&csv_, std::max(FIRST_BLOCK, csv_get_buffer_size(&csv_)));
  const std::size_t done = csv_parse(&csv_, line.data(), line.size(), &onCell, &onRow, this);
  if (out_of_memory_) {
    throw std::bad_alloc();
  }
  if (done < line.size()) {
    failInCsv();
  }
  text.remove_prefix(line.size());
}

void CsvParser::finish() {
  rows_.is_last_ = true;
  if (csv_fini(&csv_, &onCell, &onRow, this) != 0) {
    failInCsv();
  }
  if (out_of_memory_) {
    throw std::bad_alloc();
  }
}

void CsvParser::failInCsv() {
  if (csv_error(&csv_) != CSV_EPARSE) {
    throw std::bad_alloc();
  }
  fail(rowLine(), rows_.is_last_ ? "has a quote that is not closed"
                                 : "has a stray quote (quote the whole cell and double the quotes in it)");
}

void CsvParser::addCell(std::string_view cell) {
  if (!isInRow()) {
    row_line_ = line_;
  }
  line_ += static_cast<std::size_t>(std::count(cell.begin(), cell.end(), '\n'));
  rows_.addCell(cell);
  after_return_ = false;
}

// Comes once for every line end outside quotes, for CRLF twice, and at the end of the file.
void CsvParser::endLine(int letter) {
  const std::size_t first = rows_.begunCell();
  if (isInRow()) {
    rows_.rows_.push_back({row_line_, first, rows_.cells_.size() - first});
  }
  if (letter == '\r' || !after_return_) {
    ++line_;
  }
  after_return_ = letter == '\r';
}

// libcsv is C: nothing may be thrown through it.
void CsvParser::onCell(void* cell, std::size_t size, void* parser) {
  auto* self = static_cast<CsvParser*>(parser);
  try {
    self->addCell({static_cast<const char*>(cell), size});
  } catch (const std::exception&) {
    self->out_of_memory_ = true;
  }
}

void CsvParser::onRow(int letter, void* parser) {
  auto* self = static_cast<CsvParser*>(parser);
  try {
    self->endLine(letter);
  } catch (const std::exception&) {
    self->out_of_memory_ = true;
  }
}

}  // namespace spx::console
