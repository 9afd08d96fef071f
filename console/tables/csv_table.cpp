#include "console/tables/csv_table.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>

#include <csv.h>

#include "spx/support/text.h"

namespace spx::console {
namespace {

constexpr std::size_t CHUNK = 256 * 1024;
// Far above any row of a studbook; keeps a quote that is never closed from filling the memory.
constexpr std::size_t LONGEST_ROW = 64 * 1024 * 1024;
constexpr std::size_t MOST_CELLS = 65536;
constexpr std::size_t FIRST_BLOCK = 4096;
constexpr std::string_view SEPARATORS = ",;\t|";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

char findSeparator(std::string_view text) {
  std::size_t counts[SEPARATORS.size()] = {};
  bool quoted = false;
  bool begun = false;
  for (const char letter : text) {
    const bool line_end = letter == '\n' || letter == '\r';
    if (line_end && begun && !quoted) break;
    begun |= !line_end;
    quoted ^= letter == '"';
    const std::size_t which = SEPARATORS.find(letter);
    if (!quoted && which != std::string_view::npos) ++counts[which];
  }
  return SEPARATORS[static_cast<std::size_t>(std::max_element(counts, std::end(counts)) - counts)];
}

}  // namespace

/// Reads the file chunk by chunk and keeps the rows of one chunk, and the begun one, as one text
/// with the ends of its cells.
class CsvTable::Parser {
 public:
  explicit Parser(const std::string& file) : file_(std::fopen(file.c_str(), "rb"), &std::fclose) {
    if (!file_) throw TableError(0, std::string("cannot be opened: ") + std::strerror(errno));
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    constexpr unsigned char OPTIONS = CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL;
    if (csv_init(&csv_, OPTIONS) != 0) throw std::bad_alloc();
  }
  ~Parser() { csv_free(&csv_); }
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  bool next() {
    while (++row_ >= rows_.size()) {
      if (failure_) throw TableError(*failure_);
      if (ended_) return false;
      dropRows();
      readChunk();
    }
    return true;
  }

  std::size_t line() const { return rows_[row_].line; }
  std::size_t cells() const { return rows_[row_].cells; }
  std::string_view cell(std::size_t number) const {
    const std::size_t which = rows_[row_].first_cell + number;
    const std::size_t start = which == 0 ? 0 : ends_[which - 1];
    return std::string_view(text_).substr(start, ends_[which] - start);
  }

 private:
  struct row {
    std::size_t line;
    std::size_t first_cell;
    std::size_t cells;
  };

  /// Forgets the rows that were handed out; the begun row moves to the front.
  void dropRows() {
    const std::size_t kept = begunCell();
    const std::size_t start = kept == 0 ? 0 : ends_[kept - 1];
    text_.erase(0, start);
    ends_.erase(ends_.begin(), ends_.begin() + static_cast<std::ptrdiff_t>(kept));
    for (std::size_t& end : ends_) end -= start;
    rows_.clear();
    row_ = static_cast<std::size_t>(-1);
  }

  std::size_t begunCell() const {
    return rows_.empty() ? 0 : rows_.back().first_cell + rows_.back().cells;
  }

  void readChunk() {
    buffer_.resize(CHUNK);
    const std::size_t got = std::fread(buffer_.data(), 1, CHUNK, file_.get());
    if (std::ferror(file_.get()) != 0) {
      return fail(0, std::string("cannot be read: ") + std::strerror(errno));
    }
    std::string_view chunk(buffer_.data(), got);
    if (first_) begin(chunk);
    parse(chunk);
    if (got < CHUNK && !failure_) finish();
  }

  void begin(std::string_view& chunk) {
    first_ = false;
    if (chunk.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK) {
      chunk.remove_prefix(BYTE_ORDER_MARK.size());
    }
    csv_set_delim(&csv_, static_cast<unsigned char>(findSeparator(chunk)));
  }

  void parse(std::string_view chunk) {
    // By default libcsv lengthens its cell by 128 bytes at a time: a huge cell would be copied
    // over and over.
    csv_set_blk_size(&csv_, std::max(FIRST_BLOCK, csv_get_buffer_size(&csv_)));
    const std::string_view text = chunk.substr(0, chunk.find('\0'));
    const std::size_t done = csv_parse(&csv_, text.data(), text.size(), &onCell, &onRow, this);
    if (out_of_memory_) throw std::bad_alloc();
    if (done < text.size()) return failInCsv();
    if (text.size() < chunk.size()) return fail(rowLine(), "holds a NUL byte: it is no text table");
    if (csv_get_buffer_size(&csv_) > LONGEST_ROW || text_.size() > LONGEST_ROW ||
        ends_.size() - begunCell() > MOST_CELLS) {
      fail(rowLine(), "has a row that is too long (is a quote not closed?)");
    }
  }

  void finish() {
    ended_ = true;
    if (csv_fini(&csv_, &onCell, &onRow, this) != 0) failInCsv();
    if (out_of_memory_) throw std::bad_alloc();
  }

  void failInCsv() {
    if (csv_error(&csv_) != CSV_EPARSE) throw std::bad_alloc();
    fail(rowLine(), ended_
                        ? "has a quote that is not closed"
                        : "has a stray quote (quote the whole cell and double the quotes in it)");
  }

  void fail(std::size_t line, const std::string& reason) { failure_.emplace(line, reason); }

  std::size_t rowLine() const { return ends_.size() > begunCell() ? row_line_ : line_; }

  void addCell(std::string_view cell) {
    if (ends_.size() == begunCell()) row_line_ = line_;
    line_ += static_cast<std::size_t>(std::count(cell.begin(), cell.end(), '\n'));
    text_ += cell;
    ends_.push_back(text_.size());
    after_return_ = false;
  }

  /// Comes once for every line end outside quotes, for CRLF twice, and at the end of the file.
  void endLine(int letter) {
    const std::size_t first = begunCell();
    if (ends_.size() > first) rows_.push_back({row_line_, first, ends_.size() - first});
    if (letter == '\r' || !after_return_) ++line_;
    after_return_ = letter == '\r';
  }

  // libcsv is C: nothing may be thrown through it.
  static void onCell(void* cell, std::size_t size, void* parser) {
    auto* self = static_cast<Parser*>(parser);
    try {
      self->addCell({static_cast<const char*>(cell), size});
    } catch (const std::exception&) {
      self->out_of_memory_ = true;
    }
  }

  static void onRow(int letter, void* parser) {
    auto* self = static_cast<Parser*>(parser);
    try {
      self->endLine(letter);
    } catch (const std::exception&) {
      self->out_of_memory_ = true;
    }
  }

  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  csv_parser csv_{};
  std::vector<char> buffer_;
  std::string text_;
  std::vector<std::size_t> ends_;
  std::vector<row> rows_;
  std::size_t row_ = static_cast<std::size_t>(-1);
  std::size_t line_ = 1;
  std::size_t row_line_ = 1;
  bool after_return_ = false;
  bool first_ = true;
  bool ended_ = false;
  bool out_of_memory_ = false;
  std::optional<TableError> failure_;
};

CsvTable::CsvTable(const std::string& file) : parser_(std::make_unique<Parser>(file)) {
  if (!nextLine()) throw TableError(0, "is empty: a header line is needed");
  for (const std::string_view cell : cells_) {
    titles_.push_back(qs_lib::allTrim(std::string(cell)));
  }
}

CsvTable::~CsvTable() = default;

bool CsvTable::next() {
  while (nextLine()) {
    if (std::any_of(cells_.begin(), cells_.end(), [](auto cell) { return !cell.empty(); })) {
      return true;
    }
  }
  return false;
}

bool CsvTable::nextLine() {
  if (!parser_->next()) return false;
  cells_.resize(parser_->cells());
  for (std::size_t cell = 0; cell < cells_.size(); ++cell) cells_[cell] = parser_->cell(cell);
  return true;
}

std::size_t CsvTable::line() const {
  return parser_->line();
}

table_source csvSource(const std::string& file) {
  if (file.empty()) return {};
  const table_source::opener open = [file] { return std::make_unique<CsvTable>(file); };
  return {file, open, std::filesystem::is_regular_file(file) ? open : nullptr};
}

}  // namespace spx::console
