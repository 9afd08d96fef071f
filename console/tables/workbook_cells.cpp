#include "console/tables/workbook_cells.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <deque>
#include <exception>
#include <map>
#include <new>
#include <utility>
#include <vector>

#include <orcus/config.hpp>
#include <orcus/orcus_ods.hpp>
#include <orcus/orcus_xlsx.hpp>
#include <orcus/spreadsheet/import_interface.hpp>
#include <orcus/zip_archive.hpp>
#include <orcus/zip_archive_stream.hpp>

#include "console/base/failure.h"
#include "console/tables/ignored_styles.h"
#include "console/tables/number_format.h"

namespace spx::console {
namespace {

namespace ss = orcus::spreadsheet;
namespace iface = orcus::spreadsheet::iface;

constexpr std::size_t MOST_CELLS = 50'000'000;
constexpr ss::range_size_t SHEET_SIZE = {1048576, 16384};

enum class CELL : std::uint8_t { EMPTY, TEXT, NUMBER, YES, NO };

struct cell {
  ss::row_t row;
  ss::col_t column;
  CELL kind;
  std::uint32_t text;  ///< its number in the strings
  double number;
};

struct cell_format {
  ss::row_t row;
  ss::col_t column;
  std::size_t format;
};

[[noreturn]] void failForSize() {
  throw Failure("the workbook has more than 50 million cells");
}

bool isBefore(ss::row_t row_a, ss::col_t column_a, ss::row_t row_b, ss::col_t column_b) {
  return row_a != row_b ? row_a < row_b : column_a < column_b;
}

/// The texts that cells share by their numbers.
class Strings : public iface::import_shared_strings {
 public:
  std::size_t append(std::string_view text) override {
    texts_.emplace_back(text);
    return texts_.size() - 1;
  }
  std::size_t add(std::string_view text) override { return append(text); }
  void set_segment_font(std::size_t) override {}
  void set_segment_bold(bool) override {}
  void set_segment_italic(bool) override {}
  void set_segment_font_name(std::string_view) override {}
  void set_segment_font_size(double) override {}
  void set_segment_font_color(ss::color_elem_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t) override {}
  void append_segment(std::string_view text) override { segments_ += text; }
  std::size_t commit_segments() override {
    const std::size_t number = append(segments_);
    segments_.clear();
    return number;
  }

  std::string_view operator[](std::size_t number) const {
    return number < texts_.size() ? std::string_view(texts_[number]) : std::string_view();
  }

 private:
  std::deque<std::string> texts_;
  std::string segments_;
};

/// The number formats of the cell formats.
class Styles : public IgnoredStyles {
 public:
  void set_number_format_count(std::size_t) override {}
  void set_number_format_identifier(std::size_t identifier) override { identifier_ = identifier; }
  void set_number_format_code(std::string_view code) override { code_ = code; }
  std::size_t commit_number_format() override {
    codes_[identifier_] = readNumberFormat(code_);
    return identifier_++;
  }
  void set_xf_number_format(std::size_t identifier) override { current_ = identifier; }
  std::size_t commit_cell_xf() override {
    formats_.push_back(std::exchange(current_, 0));
    return formats_.size() - 1;
  }
  std::size_t commit_cell_style_xf() override {
    current_ = 0;
    return style_formats_++;
  }
  std::size_t commit_dxf() override {
    current_ = 0;
    return differences_++;
  }

  number_format of(std::size_t cell_format) const {
    if (cell_format >= formats_.size()) {
      return {};
    }
    const auto own = codes_.find(formats_[cell_format]);
    return own == codes_.end() ? builtInNumberFormat(formats_[cell_format]) : own->second;
  }

 private:
  std::size_t identifier_ = 0;
  std::string code_;
  std::size_t current_ = 0;
  std::size_t style_formats_ = 0;
  std::size_t differences_ = 0;
  std::map<std::size_t, number_format> codes_;
  std::vector<std::size_t> formats_;
};

class Sheet;

/// The last known results of formulas.
class Formula : public iface::import_formula {
 public:
  explicit Formula(Sheet& sheet) : sheet_(sheet) {}
  void set_position(ss::row_t row, ss::col_t column) override;
  void set_formula(ss::formula_grammar_t, std::string_view) override {}
  void set_shared_formula_index(std::size_t) override {}
  void set_result_string(std::string_view value) override;
  void set_result_value(double value) override;
  void set_result_bool(bool value) override;
  void set_result_empty() override {}
  void commit() override {}

 private:
  Sheet& sheet_;
  ss::row_t row_ = 0;
  ss::col_t column_ = 0;
};

/// Notes vertically merged cells: all of them hold the value of the first.
class Properties : public iface::import_sheet_properties {
 public:
  explicit Properties(Sheet& sheet) : sheet_(sheet) {}
  void set_column_width(ss::col_t, double, orcus::length_unit_t) override {}
  void set_column_hidden(ss::col_t, bool) override {}
  void set_row_height(ss::row_t, double, orcus::length_unit_t) override {}
  void set_row_hidden(ss::row_t, bool) override {}
  void set_merge_cell_range(const ss::range_t& range) override;

 private:
  Sheet& sheet_;
};

class Sheet : public iface::import_sheet {
 public:
  Sheet(std::string_view name, Strings& strings, std::size_t& cells)
      : name_(name), strings_(strings), cell_count_(cells) {}

  iface::import_sheet_properties* get_sheet_properties() override { return &properties_; }
  iface::import_formula* get_formula() override { return &formula_; }

  void set_auto(ss::row_t row, ss::col_t column, std::string_view text) override { addText(row, column, text); }
  void set_string(ss::row_t row, ss::col_t column, ss::string_id_t text) override {
    add({row, column, CELL::TEXT, text, 0});
  }
  void set_value(ss::row_t row, ss::col_t column, double value) override { add({row, column, CELL::NUMBER, 0, value}); }
  void set_bool(ss::row_t row, ss::col_t column, bool value) override {
    add({row, column, value ? CELL::YES : CELL::NO, 0, 0});
  }
  void set_date_time(ss::row_t row, ss::col_t column, int year, int month, int day, int hour, int minute,
                     double second) override {
    char text[64];
    const int whole = static_cast<int>(std::clamp(second, 0.0, 60.0));
    const bool has_time = hour != 0 || minute != 0 || whole != 0;
    std::snprintf(text, sizeof text, has_time ? "%04d-%02d-%02dT%02d:%02d:%02d" : "%04d-%02d-%02d", year, month, day,
                  hour, minute, whole);
    addText(row, column, text);
  }
  void set_format(ss::row_t row, ss::col_t column, std::size_t format) override {
    formats_.push_back({row, column, format});
  }
  void set_format(ss::row_t, ss::col_t, ss::row_t, ss::col_t, std::size_t) override {}
  void fill_down_cells(ss::row_t row, ss::col_t column, ss::row_t more) override {
    const auto source = std::find_if(cells_.rbegin(), cells_.rend(),
                                     [&](const cell& each) { return each.row == row && each.column == column; });
    if (source == cells_.rend() || source->kind == CELL::EMPTY) {
      return;
    }
    cell copy = *source;
    for (ss::row_t below = 1; below <= more; ++below) {
      copy.row = row + below;
      add(copy);
    }
  }
  ss::range_size_t get_sheet_size() const override { return SHEET_SIZE; }

  void addText(ss::row_t row, ss::col_t column, std::string_view text) {
    add({row, column, CELL::TEXT, static_cast<std::uint32_t>(strings_.append(text)), 0});
  }
  void addMerged(const ss::range_t& range) {
    const bool is_one_column = range.first.column == range.last.column && range.first.row < range.last.row;
    if (is_one_column) {
      merged_.push_back(range);
    }
  }

  const std::string& name() const { return name_; }

  /// Puts the cells in order, each with the format that was named for it. A cell that was set twice
  /// has the last value.
  void settle() {
    for (const ss::range_t& range : merged_) {
      fill_down_cells(range.first.row, range.first.column, range.last.row - range.first.row);
    }
    std::stable_sort(cells_.begin(), cells_.end(),
                     [](const cell& a, const cell& b) { return isBefore(a.row, a.column, b.row, b.column); });
    std::stable_sort(formats_.begin(), formats_.end(), [](const cell_format& a, const cell_format& b) {
      return isBefore(a.row, a.column, b.row, b.column);
    });
  }

  const std::vector<cell>& cells() const { return cells_; }

  /// The format of a cell; none is a number that no format has. To be asked in the order of the
  /// cells.
  std::size_t formatOf(const cell& each) {
    while (next_format_ < formats_.size() &&
           isBefore(formats_[next_format_].row, formats_[next_format_].column, each.row, each.column)) {
      ++next_format_;
    }
    const bool has_one = next_format_ < formats_.size() && formats_[next_format_].row == each.row &&
                         formats_[next_format_].column == each.column;
    return has_one ? formats_[next_format_].format : static_cast<std::size_t>(-1);
  }

 private:
  void add(const cell& added) {
    if (++cell_count_ > MOST_CELLS) {
      failForSize();
    }
    if (added.row < 0 || added.row >= SHEET_SIZE.rows || added.column < 0 || added.column >= SHEET_SIZE.columns) {
      throw Failure("a cell lies outside its sheet");
    }
    cells_.push_back(added);
  }

  std::string name_;
  Strings& strings_;
  std::size_t& cell_count_;
  Formula formula_{*this};
  Properties properties_{*this};
  std::vector<cell> cells_;
  std::vector<cell_format> formats_;
  std::size_t next_format_ = 0;
  std::vector<ss::range_t> merged_;
};

void Formula::set_position(ss::row_t row, ss::col_t column) {
  row_ = row;
  column_ = column;
}
void Formula::set_result_string(std::string_view value) {
  sheet_.addText(row_, column_, value);
}
void Formula::set_result_value(double value) {
  sheet_.set_value(row_, column_, value);
}
void Formula::set_result_bool(bool value) {
  sheet_.set_bool(row_, column_, value);
}
void Properties::set_merge_cell_range(const ss::range_t& range) {
  sheet_.addMerged(range);
}

/// Reads "B7" and "B7:C9".
class Addresses : public iface::import_reference_resolver {
 public:
  ss::src_address_t resolve_address(std::string_view text) override {
    ss::src_address_t address{};
    std::size_t at = 0;
    for (; at < text.size() && isLetter(text[at]); ++at) {
      address.column = std::min(address.column * 26 + (text[at] & 0x1F), SHEET_SIZE.columns + 1);
    }
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
      address.row = std::min(address.row * 10 + (text[at] - '0'), SHEET_SIZE.rows + 1);
    }
    if (at < text.size() || address.column == 0 || address.row == 0) {
      throw Failure("a cell has no valid address");
    }
    --address.column;
    --address.row;
    return address;
  }
  ss::src_range_t resolve_range(std::string_view text) override {
    const std::size_t colon = std::min(text.find(':'), text.size());
    const ss::src_address_t first = resolve_address(text.substr(0, colon));
    return {first, colon == text.size() ? first : resolve_address(text.substr(colon + 1))};
  }

 private:
  static bool isLetter(char letter) { return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z'); }
};

class Settings : public iface::import_global_settings {
 public:
  void set_origin_date(int year, int, int) override { origin_is_1904 = year == 1904; }
  void set_default_formula_grammar(ss::formula_grammar_t grammar) override { grammar_ = grammar; }
  ss::formula_grammar_t get_default_formula_grammar() const override { return grammar_; }
  void set_character_set(orcus::character_set_t) override {}

  bool origin_is_1904 = false;

 private:
  ss::formula_grammar_t grammar_ = ss::formula_grammar_t::unknown;
};

class CellCollector : public iface::import_factory {
 public:
  iface::import_global_settings* get_global_settings() override { return &settings_; }
  iface::import_shared_strings* get_shared_strings() override { return &strings_; }
  iface::import_styles* get_styles() override { return &styles_; }
  iface::import_reference_resolver* get_reference_resolver(ss::formula_ref_context_t) override { return &addresses_; }
  iface::import_sheet* append_sheet(ss::sheet_t, std::string_view name) override {
    return &sheets_.emplace_back(name, strings_, cells_);
  }
  iface::import_sheet* get_sheet(std::string_view name) override {
    const auto found =
        std::find_if(sheets_.begin(), sheets_.end(), [&](const Sheet& each) { return each.name() == name; });
    return found == sheets_.end() ? nullptr : &*found;
  }
  iface::import_sheet* get_sheet(ss::sheet_t index) override {
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < sheets_.size();
    return exists ? &sheets_[static_cast<std::size_t>(index)] : nullptr;
  }
  void finalize() override {}

  void write(const std::function<void(std::string_view)>& output) {
    for (Sheet& sheet : sheets_) {
      bytes_ += 'S';
      addText(sheet.name());
      sheet.settle();
      writeRows(sheet, output);
    }
    bytes_ += 'E';
    output(bytes_);
  }

 private:
  void writeRows(Sheet& sheet, const std::function<void(std::string_view)>& output) {
    constexpr std::size_t PART = std::size_t{1} << 16;
    const std::vector<cell>& cells = sheet.cells();
    for (std::size_t begin = 0, end = 0; begin < cells.size(); begin = end) {
      row_.clear();
      for (end = begin; end < cells.size() && cells[end].row == cells[begin].row; ++end) {
        row_.resize(static_cast<std::size_t>(cells[end].column) + 1);
        row_.back() = textOf(cells[end], sheet.formatOf(cells[end]));
      }
      if (std::all_of(row_.begin(), row_.end(), [](const std::string& text) { return text.empty(); })) {
        continue;
      }
      written_ += row_.size();
      if (written_ > MOST_CELLS) {
        failForSize();
      }
      bytes_ += 'R';
      addNumber(static_cast<std::size_t>(cells[begin].row) + 1);
      addNumber(row_.size());
      for (const std::string& text : row_) {
        addText(text);
      }
      if (bytes_.size() > PART) {
        output(bytes_);
        bytes_.clear();
      }
    }
  }

  std::string textOf(const cell& each, std::size_t format) const {
    switch (each.kind) {
      case CELL::TEXT:
        return std::string(strings_[each.text]);
      case CELL::NUMBER:
        return std::isfinite(each.number) ? numberText(each.number, styles_.of(format), settings_.origin_is_1904) : "";
      case CELL::YES:
        return "yes";
      case CELL::NO:
        return "no";
      default:
        return {};
    }
  }

  void addNumber(std::size_t number) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes_ += static_cast<char>(number >> shift);
    }
  }
  void addText(std::string_view text) {
    addNumber(text.size());
    bytes_ += text;
  }

  Settings settings_;
  Strings strings_;
  Styles styles_;
  Addresses addresses_;
  std::size_t cells_ = 0;
  std::size_t written_ = 0;  ///< cells, with the empty ones between
  std::deque<Sheet> sheets_;
  std::vector<std::string> row_;
  std::string bytes_;
};

constexpr std::array<std::uint32_t, 256> CHECKSUMS = [] {
  std::array<std::uint32_t, 256> sums{};
  for (std::uint32_t byte = 0; byte < sums.size(); ++byte) {
    std::uint32_t sum = byte;
    for (int bit = 0; bit < 8; ++bit) {
      sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    sums[byte] = sum;
  }
  return sums;
}();

std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t sum = ~0U;
  for (const char byte : bytes) {
    sum = (sum >> 8U) ^ CHECKSUMS[(sum ^ static_cast<unsigned char>(byte)) & 0xFFU];
  }
  return ~sum;
}

/// Refuses a workbook whose parts are not what was packed, and what the library that reads workbooks
/// would leave out without a word: texts inside the cells of .xlsx files, and rows with content that
/// .ods files give once for several.
class ContentCheck {
 public:
  explicit ContentCheck(const std::string& content)
      : content_(content),
        stream_(reinterpret_cast<const unsigned char*>(content.data()), content.size()),
        archive_(&stream_) {
    archive_.load();
  }

  /// Goes through the directory at the end of the archive.
  void check() const {
    constexpr std::string_view END = "PK\x05\x06";
    const std::size_t end = content_.rfind(END);
    std::size_t at = number(end == std::string::npos ? content_.size() : end + 16, 4);
    for (std::size_t left = number(end + 10, 2); left > 0; --left) {
      const std::size_t name_size = number(at + 28, 2);
      const std::string_view name = std::string_view(content_).substr(at + 46, name_size);
      // A part whose name is damaged in one of the two places would not be found.
      const std::size_t local = number(at + 42, 4);
      if (number(local + 26, 2) != name_size || content_.compare(local + 30, name_size, name) != 0) {
        throw Failure("is damaged: its parts are not where they should be");
      }
      checkPart(name, number(at + 16, 4), number(at + 24, 4));
      at += 46 + name_size + number(at + 30, 2) + number(at + 32, 2);
    }
  }

 private:
  void checkPart(std::string_view name, std::size_t sum, std::size_t size) const {
    std::vector<unsigned char> bytes;
    const bool is_directory = name.ends_with('/');
    if (!is_directory && !archive_.read_file_entry(name, bytes)) {
      throw Failure("is damaged: a part cannot be unpacked");
    }
    const std::string_view part(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (part.size() < size || checksum(part.substr(0, size)) != sum) {
      throw Failure("is damaged: a part is not what was packed");
    }
    if (name.starts_with("xl/worksheets/sheet") && part.find("\"inlineStr\"") != std::string_view::npos) {
      throw Failure("keeps texts in a way that cannot be read here; open it in a spreadsheet and save it again");
    }
    if (name == "content.xml" && repeatsRows(part)) {
      throw Failure("keeps equal rows in a way that cannot be read here; save it as .xlsx");
    }
  }

  /// A number of the archive, lowest byte first.
  std::size_t number(std::size_t at, std::size_t bytes) const {
    if (at > content_.size() || content_.size() - at < bytes) {
      throw Failure("is damaged: it ends too early");
    }
    std::size_t value = 0;
    for (std::size_t byte = bytes; byte > 0; --byte) {
      value = value << 8U | static_cast<unsigned char>(content_[at + byte - 1]);
    }
    return value;
  }

  /// Whether a row that stands for several has a value.
  static bool repeatsRows(std::string_view xml) {
    constexpr std::string_view REPEATED = "number-rows-repeated=";
    for (std::size_t at = xml.find(REPEATED); at != std::string_view::npos; at = xml.find(REPEATED, at + 1)) {
      const std::size_t tag_end = std::min(xml.find('>', at), xml.size());
      const bool is_empty = tag_end < xml.size() && xml[tag_end - 1] == '/';
      const bool is_one = xml.substr(at + REPEATED.size(), 3) == "\"1\"";
      const std::size_t row_end = std::min(xml.find("</table:table-row>", tag_end), xml.size());
      const bool has_value = xml.substr(tag_end, row_end - tag_end).find("value-type=") != std::string_view::npos;
      if (!is_empty && !is_one && has_value) {
        return true;
      }
    }
    return false;
  }

  const std::string& content_;
  orcus::zip_archive_stream_blob stream_;
  orcus::zip_archive archive_;
};

template <class Filter>
void readInto(CellCollector& cells, const std::string& content) {
  Filter filter(&cells);
  orcus::config config = filter.get_config();
  config.debug = false;
  config.structure_check = false;
  filter.set_config(config);
  filter.read_stream(content);
}

void readWorkbook(const std::string& content, CellCollector& cells) {
  ContentCheck(content).check();
  const auto* bytes = reinterpret_cast<const unsigned char*>(content.data());
  if (orcus::orcus_ods::detect(bytes, content.size())) {
    readInto<orcus::orcus_ods>(cells, content);
  } else if (orcus::orcus_xlsx::detect(bytes, content.size())) {
    readInto<orcus::orcus_xlsx>(cells, content);
  } else {
    throw Failure("not an .xlsx or .ods workbook");
  }
}

}  // namespace

void writeWorkbookCells(const std::string& content, const std::function<void(std::string_view)>& output) {
  CellCollector cells;
  try {
    readWorkbook(content, cells);
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw Failure(std::string("is damaged: ") + error.what());
  }
  cells.write(output);
}

}  // namespace spx::console
