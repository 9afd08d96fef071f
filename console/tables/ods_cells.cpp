// Workbooks as LibreOffice writes them (OpenDocument 1.3, ISO/IEC 26300): one file with all sheets.
#include <algorithm>
#include <charconv>
#include <map>
#include <utility>
#include <vector>

#include "console/base/failure.h"
#include "console/tables/number_format.h"
#include "console/tables/workbook_formats.h"

namespace spx::console {
namespace {

constexpr char CONTENT[] = "content.xml";
constexpr char STYLES[] = "styles.xml";
constexpr char MANIFEST[] = "META-INF/manifest.xml";

/// Which files there should be.
class Manifest : public XmlHandler {
 public:
  void start(std::string_view name, const XmlAttributes& attributes) override {
    is_encrypted = is_encrypted || name == "encryption-data";
    has_styles = has_styles || (name == "file-entry" && attributes["full-path"] == STYLES);
  }

  bool is_encrypted = false;
  bool has_styles = false;
};

/// How the styles of cells show numbers and dates.
class CellStyles {
 public:
  void start(std::string_view name, const XmlAttributes& attributes) {
    if (name == "style" && attributes["family"] == "table-cell") {
      cells_[std::string(attributes["name"])] = {std::string(attributes["data-style-name"]),
                                                 std::string(attributes["parent-style-name"])};
    } else if (name == "date-style" || name == "number-style") {
      format_ = &formats_[std::string(attributes["name"])];
    } else if (format_ != nullptr) {
      readPart(name, attributes);
    }
  }
  void end(std::string_view name) {
    if (name == "date-style" || name == "number-style") {
      format_ = nullptr;
    }
  }

  number_format of(std::string_view style) const {
    constexpr int DEEPEST = 10;  // styles that are parents of each other end as well
    for (int depth = 0; depth < DEEPEST; ++depth) {
      const auto cell = cells_.find(style);
      if (cell == cells_.end()) {
        return {};
      }
      if (!cell->second.format.empty()) {
        const auto format = formats_.find(cell->second.format);
        return format == formats_.end() ? number_format() : format->second;
      }
      style = cell->second.parent;
    }
    return {};
  }

 private:
  struct cell_style {
    std::string format;
    std::string parent;
  };

  /// The parts of a date come in any order; its smallest one counts.
  void readPart(std::string_view part, const XmlAttributes& attributes) {
    const auto is_larger = [&](NUMBER_FORM form) {
      return format_->form == NUMBER_FORM::NUMBER || format_->form == form;
    };
    if (part == "day") {
      format_->form = NUMBER_FORM::DAY;
    } else if (part == "month" && is_larger(NUMBER_FORM::YEAR)) {
      format_->form = NUMBER_FORM::MONTH;
    } else if (part == "year" && is_larger(NUMBER_FORM::YEAR)) {
      format_->form = NUMBER_FORM::YEAR;
    } else if (part == "number" && attributes.number("decimal-places", 0) == 0 &&
               attributes.number("min-integer-digits", 0) > 1) {
      *format_ = {NUMBER_FORM::PADDED, std::min<std::size_t>(attributes.number("min-integer-digits", 0), 100)};
    }
  }

  std::map<std::string, cell_style, std::less<>> cells_;
  std::map<std::string, number_format, std::less<>> formats_;
  number_format* format_ = nullptr;  ///< the one that is read now
};

/// The styles that are kept beside the content.
class StylesReader : public XmlHandler {
 public:
  explicit StylesReader(CellStyles& styles) : styles_(styles) {}
  void start(std::string_view name, const XmlAttributes& attributes) override { styles_.start(name, attributes); }
  void end(std::string_view name) override { styles_.end(name); }

 private:
  CellStyles& styles_;
};

class ContentReader : public XmlHandler {
 public:
  ContentReader(CellStyles& styles, SheetCells& cells) : styles_(styles), cells_(cells) {}

  void start(std::string_view name, const XmlAttributes& attributes) override {
    ++depth_;
    if (skipped_ != 0) {
      return;
    }
    if (name == "table" && table_ == 0) {
      startTable(attributes);
    } else if (table_ == 0) {
      styles_.start(name, attributes);
    } else if (cell_ != 0) {
      startText(name, attributes);
    } else if (name == "table-cell" || name == "covered-table-cell") {
      startCell(name, attributes);
    } else if (name == "table-row") {
      repeated_rows_ = std::max<std::size_t>(attributes.number("number-rows-repeated", 1), 1);
      row_style_ = attributes["default-cell-style-name"];
      column_ = 0;
    } else if (name == "table-column") {
      addColumns(attributes);
    } else if (name == "table-source") {
      is_copy_ = true;
    } else if (name == "shapes") {
      skipped_ = depth_;
    }
  }

  void end(std::string_view name) override {
    if (skipped_ == 0 && table_ == 0) {
      styles_.end(name);
    } else if (depth_ == skipped_) {
      skipped_ = 0;
    } else if (depth_ == paragraph_) {
      paragraph_ = 0;
    } else if (depth_ == cell_) {
      endCell();
      cell_ = 0;
    } else if (skipped_ == 0 && cell_ == 0 && name == "table-row") {
      endRow();
    } else if (depth_ == table_) {
      endTable();
    }
    --depth_;
  }

  void text(std::string_view text) override {
    if (paragraph_ != 0 && skipped_ == 0) {
      text_ += text;
    }
  }

 private:
  void startTable(const XmlAttributes& attributes) {
    table_ = depth_;
    is_copy_ = false;
    row_ = 0;
    column_styles_.clear();
    cells_.beginSheet(std::string(attributes["name"]));
  }

  /// Cells of other files that formulas refer to are kept as sheets.
  void endTable() {
    if (is_copy_) {
      cells_.dropSheet();
    }
    table_ = 0;
  }

  void addColumns(const XmlAttributes& attributes) {
    const std::size_t room = SheetCells::MOST_COLUMNS - std::min(column_styles_.size(), SheetCells::MOST_COLUMNS);
    column_styles_.insert(column_styles_.end(), std::min(attributes.number("number-columns-repeated", 1), room),
                          std::string(attributes["default-cell-style-name"]));
  }

  void startCell(std::string_view name, const XmlAttributes& attributes) {
    cell_ = depth_;
    is_covered_ = name == "covered-table-cell";
    repeated_cells_ = std::max<std::size_t>(attributes.number("number-columns-repeated", 1), 1);
    spanned_rows_ =
        attributes.number("number-columns-spanned", 1) == 1 ? attributes.number("number-rows-spanned", 1) : 1;
    kind_ = attributes["value-type"];
    style_ = attributes["style-name"];
    value_ = attributes[kind_ == "date"      ? "date-value"
                        : kind_ == "boolean" ? "boolean-value"
                        : kind_ == "string"  ? "string-value"
                                             : "value"];
    text_.clear();
    paragraphs_ = 0;
  }

  /// The paragraphs of the cell itself are its text; comments and pictures have some of their own.
  void startText(std::string_view name, const XmlAttributes& attributes) {
    if (paragraph_ == 0) {
      if (name != "p" || depth_ != cell_ + 1) {
        skipped_ = depth_;
        return;
      }
      paragraph_ = depth_;
      text_ += paragraphs_++ == 0 ? "" : "\n";
    } else if (name == "s") {
      text_.append(std::min<std::size_t>(attributes.number("c", 1), 1000), ' ');
    } else if (name == "tab") {
      text_ += '\t';
    } else if (name == "line-break") {
      text_ += '\n';
    } else if (name == "annotation") {
      skipped_ = depth_;
    }
  }

  void endCell() {
    const std::size_t last = column_ + repeated_cells_;
    if (std::string text = is_covered_ ? "" : cellText(); !text.empty()) {
      const std::size_t kept = cells_.keepText(std::move(text));
      for (std::size_t column = column_; column < last; ++column) {
        cells_.set(row_, column, kept);
      }
      cells_.merge(row_, row_ + spanned_rows_ - 1, column_);
    }
    column_ = last;
  }

  std::string cellText() {
    if (kind_ == "date") {
      return shortenedDate(value_, styles_.of(styleOfCell()).form);
    }
    if (kind_ == "boolean") {
      return value_ == "true" ? "yes" : "no";
    }
    if (kind_ == "float" || kind_ == "percentage" || kind_ == "currency") {
      double number = 0;
      const auto result = std::from_chars(value_.data(), value_.data() + value_.size(), number);
      if (value_.empty() || result.ptr != value_.data() + value_.size()) {
        throw Failure("is damaged: a number cannot be read");
      }
      return numberText(number, styles_.of(styleOfCell()), false);
    }
    return paragraphs_ == 0 ? value_ : std::move(text_);
  }

  std::string_view styleOfCell() const {
    if (!style_.empty()) {
      return style_;
    }
    return !row_style_.empty() || column_ >= column_styles_.size() ? row_style_ : column_styles_[column_];
  }

  void endRow() {
    cells_.repeatRow(row_, repeated_rows_ - 1);
    row_ += repeated_rows_;
  }

  CellStyles& styles_;
  SheetCells& cells_;
  // Elements by how deep they lie; 0: outside of one.
  std::size_t depth_ = 0;
  std::size_t skipped_ = 0;
  std::size_t table_ = 0;
  std::size_t cell_ = 0;
  std::size_t paragraph_ = 0;
  bool is_copy_ = false;
  std::size_t row_ = 0;
  std::size_t repeated_rows_ = 1;
  std::string row_style_;
  std::vector<std::string> column_styles_;
  std::size_t column_ = 0;
  std::size_t repeated_cells_ = 1;
  std::size_t spanned_rows_ = 1;
  bool is_covered_ = false;
  std::string kind_;
  std::string style_;
  std::string value_;
  std::string text_;
  std::size_t paragraphs_ = 0;
};

}  // namespace

bool isOds(const XmlParts& parts) {
  return parts.has(CONTENT);
}

void readOds(const XmlParts& parts, SheetCells& cells) {
  Manifest manifest;
  if (parts.has(MANIFEST)) {
    parts.parse(MANIFEST, manifest);
  }
  if (manifest.is_encrypted) {
    throw Failure("has a password; save it without one");
  }
  CellStyles styles;
  if (manifest.has_styles) {
    StylesReader reader(styles);
    parts.parse(STYLES, reader);
  }
  ContentReader reader(styles, cells);
  parts.parse(CONTENT, reader);
}

}  // namespace spx::console
