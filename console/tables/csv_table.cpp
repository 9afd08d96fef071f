#include "console/tables/csv_table.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
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

constexpr std::size_t SAMPLES = 8;
constexpr std::size_t SAMPLE_SIZE = 64 * 1024;

/// The number of lines by those of some parts of the file; 0 for a file that can be read only once.
std::size_t estimateRows(const std::string& file) {
  std::error_code failed;
  const std::uintmax_t size = std::filesystem::file_size(file, failed);
  std::ifstream in(file, std::ios::binary);
  if (failed || !in) return 0;
  std::vector<char> part(SAMPLE_SIZE);
  std::uintmax_t read = 0;
  std::uintmax_t lines = 1;
  for (std::size_t sample = 0; sample < SAMPLES; ++sample) {
    in.clear();
    in.seekg(static_cast<std::streamoff>(size / SAMPLES * sample));
    in.read(part.data(), static_cast<std::streamsize>(std::min(SAMPLE_SIZE, size / SAMPLES + 1)));
    read += static_cast<std::uintmax_t>(in.gcount());
    lines += static_cast<std::uintmax_t>(std::count(part.data(), part.data() + in.gcount(), '\n'));
  }
  const double share = read == 0 ? 0 : static_cast<double>(size) / static_cast<double>(read);
  return static_cast<std::size_t>(static_cast<double>(lines) * share);
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
    separator_ = findSeparator(chunk);
    csv_set_delim(&csv_, static_cast<unsigned char>(separator_));
  }

  void parse(std::string_view chunk) {
    const std::string_view text = chunk.substr(0, chunk.find('\0'));
    std::string_view rest = text;
    while (!rest.empty() && !failure_) {
      if (isBetweenRows()) readPlainLines(rest);
      if (!rest.empty()) parseLine(rest);
    }
    if (failure_) return;
    if (text.size() < chunk.size()) return fail(rowLine(), "holds a NUL byte: it is no text table");
    if (csv_get_buffer_size(&csv_) > LONGEST_ROW || text_.size() > LONGEST_ROW ||
        ends_.size() - begunCell() > MOST_CELLS) {
      fail(rowLine(), "has a row that is too long (is a quote not closed?)");
    }
  }

  /// Whether libcsv holds no part of a row.
  bool isBetweenRows() const { return csv_.pstate == 0; }

  /// Cuts whole lines without quotes at their separators, which is all that most lines of large
  /// tables need, several times as fast; stops at the first other line.
  void readPlainLines(std::string_view& text) {
    const std::string_view plain = text.substr(0, text.find('"'));
    std::size_t start = 0;
    for (std::size_t end = plain.find('\n'); end != std::string_view::npos;
         end = plain.find('\n', start)) {
      std::string_view line = plain.substr(start, end - start);
      const bool is_crlf = line.ends_with('\r');
      if (is_crlf) line.remove_suffix(1);
      if (line.find('\r') != std::string_view::npos) break;  // a line end, too
      addPlainCells(line);
      if (is_crlf) endLine('\r');
      endLine('\n');
      start = end + 1;
    }
    text.remove_prefix(start);
  }

  bool isBlank(char letter) const {
    return (letter == ' ' || letter == '\t') && letter != separator_;
  }

  std::string_view trimmed(std::string_view cell) const {
    while (!cell.empty() && isBlank(cell.front())) cell.remove_prefix(1);
    while (!cell.empty() && isBlank(cell.back())) cell.remove_suffix(1);
    return cell;
  }

  void addPlainCells(std::string_view line) {
    if (trimmed(line).empty()) return;
    row_line_ = line_;
    after_return_ = false;
    for (std::size_t start = 0, end = 0; end != std::string_view::npos; start = end + 1) {
      end = line.find(separator_, start);
      text_ += trimmed(line.substr(start, end == std::string_view::npos ? end : end - start));
      ends_.push_back(text_.size());
    }
  }

  /// One line, or what the chunk holds of it, through libcsv.
  void parseLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = end == std::string_view::npos ? text : text.substr(0, end + 1);
    // By default libcsv lengthens its cell by 128 bytes at a time: a huge cell would be copied
    // over and over.
    csv_set_blk_size(&csv_, std::max(FIRST_BLOCK, csv_get_buffer_size(&csv_)));
    const std::size_t done = csv_parse(&csv_, line.data(), line.size(), &onCell, &onRow, this);
    if (out_of_memory_) throw std::bad_alloc();
    if (done < line.size()) failInCsv();
    text.remove_prefix(line.size());
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
  char separator_ = ',';
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
  return {file, open, [file] { return estimateRows(file); }};
}

}  // namespace spx::console
