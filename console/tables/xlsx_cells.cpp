// Workbooks as Excel writes them (ECMA-376): a file for each sheet, one for the texts that cells share, one for
// formats.
#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "console/base/failure.h"
#include "console/tables/number_format.h"
#include "console/tables/workbook_formats.h"

namespace spx::console {
namespace {

constexpr char TOP_RELATIONS[] = "_rels/.rels";

struct relation {
  std::string kind;  ///< the last word of its type
  std::string target;
};

/// Which files belong to a file: `A/_rels/B.rels` says it for `A/B`.
class Relations : public XmlHandler {
 public:
  Relations(const XmlParts& parts, const std::string& name, std::string directory) : directory_(std::move(directory)) {
    parts.parse(name, *this);
  }

  void start(std::string_view name, const XmlAttributes& attributes) override {
    if (name != "Relationship") {
      return;
    }
    const std::string_view type = attributes["Type"];
    std::string target(attributes["Target"]);
    target = target.starts_with('/') ? target.substr(1) : directory_ + target;
    by_id_[std::string(attributes["Id"])] = {std::string(type.substr(type.rfind('/') + 1)), std::move(target)};
  }

  /// The file of a kind; empty where there is none.
  std::string only(std::string_view kind) const {
    const auto found =
        std::find_if(by_id_.begin(), by_id_.end(), [&](const auto& each) { return each.second.kind == kind; });
    return found == by_id_.end() ? std::string() : found->second.target;
  }

  const relation& of(const std::string& id) const {
    const auto found = by_id_.find(id);
    if (found == by_id_.end()) {
      throw Failure("is damaged: a sheet has no file");
    }
    return found->second;
  }

 private:
  std::string directory_;
  std::map<std::string, relation> by_id_;
};

/// The list of sheets, and how the workbook counts days.
class SheetList : public XmlHandler {
 public:
  void start(std::string_view name, const XmlAttributes& attributes) override {
    if (name == "sheet") {
      sheets.emplace_back(attributes["name"], attributes["id"]);
    } else if (name == "workbookPr") {
      const std::string_view flag = attributes["date1904"];
      origin_is_1904 = flag == "1" || flag == "true";
    }
  }

  std::vector<std::pair<std::string, std::string>> sheets;  ///< names and relations
  bool origin_is_1904 = false;
};

/// The number formats of the cell formats.
class Formats : public XmlHandler {
 public:
  void start(std::string_view name, const XmlAttributes& attributes) override {
    if (name == "numFmt") {
      codes_[attributes.number("numFmtId", 0)] = readNumberFormat(attributes["formatCode"]);
    } else if (name == "cellXfs") {
      in_cells_ = true;
    } else if (name == "xf" && in_cells_) {
      formats_.push_back(attributes.number("numFmtId", 0));
    }
  }
  void end(std::string_view name) override { in_cells_ = in_cells_ && name != "cellXfs"; }

  number_format of(std::size_t format) const {
    if (format >= formats_.size()) {
      return {};
    }
    const auto own = codes_.find(formats_[format]);
    return own == codes_.end() ? builtInNumberFormat(formats_[format]) : own->second;
  }

 private:
  bool in_cells_ = false;
  std::map<std::size_t, number_format> codes_;
  std::vector<std::size_t> formats_;
};

/// `_x000D_` stands for a character that XML cannot hold.
std::string unescaped(const std::string& text) {
  constexpr std::size_t ESCAPE = 7;
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    unsigned code = 0;
    const char* digits = text.data() + at + 2;
    const bool is_escape = text.compare(at, 2, "_x") == 0 && text.size() - at >= ESCAPE &&
                           text[at + ESCAPE - 1] == '_' &&
                           std::from_chars(digits, digits + 4, code, 16).ptr == digits + 4 && code < 0x80;
    plain += is_escape ? static_cast<char>(code) : text[at];
    at += is_escape ? ESCAPE - 1 : 0;
  }
  return plain;
}

/// The text of an element with runs of formatted text, without what shows how to pronounce it.
class RichText {
 public:
  void start(std::string_view name) {
    is_phonetic_ = is_phonetic_ || name == "rPh";
    is_open_ = name == "t" && !is_phonetic_;
  }
  void end(std::string_view name) {
    is_phonetic_ = is_phonetic_ && name != "rPh";
    is_open_ = false;
  }
  void text(std::string_view text) {
    if (is_open_) {
      text_ += text;
    }
  }
  std::string take() { return unescaped(std::exchange(text_, {})); }

 private:
  bool is_phonetic_ = false;
  bool is_open_ = false;
  std::string text_;
};

/// The texts that cells share.
class SharedTexts : public XmlHandler {
 public:
  explicit SharedTexts(SheetCells& cells) : cells_(cells) {}

  void start(std::string_view name, const XmlAttributes&) override { text_.start(name); }
  void end(std::string_view name) override {
    text_.end(name);
    if (name == "si") {
      kept_.push_back(cells_.keepText(text_.take()));
    }
  }
  void text(std::string_view text) override { text_.text(text); }

  std::size_t of(std::string_view number) const {
    std::size_t which = kept_.size();
    std::from_chars(number.data(), number.data() + number.size(), which);
    if (which >= kept_.size()) {
      throw Failure("is damaged: the text of a cell is missing");
    }
    return kept_[which];
  }

 private:
  SheetCells& cells_;
  RichText text_;
  std::vector<std::size_t> kept_;
};

struct address {
  std::size_t row = 0;
  std::size_t column = 0;
};

/// Reads "B7".
address readAddress(std::string_view text) {
  address found;
  std::size_t at = 0;
  for (; at < text.size() && text[at] >= 'A' && text[at] <= 'Z'; ++at) {
    found.column = std::min(found.column * 26 + static_cast<std::size_t>(text[at] - 'A' + 1), SheetCells::MOST_COLUMNS);
  }
  const auto result = std::from_chars(text.data() + at, text.data() + text.size(), found.row);
  if (at == 0 || found.row == 0 || result.ec != std::errc() || result.ptr != text.data() + text.size()) {
    throw Failure("is damaged: a cell has no valid address");
  }
  --found.row;
  --found.column;
  return found;
}

class SheetReader : public XmlHandler {
 public:
  SheetReader(SheetCells& cells, const SharedTexts& texts, const Formats& formats, bool origin_is_1904)
      : cells_(cells), texts_(texts), formats_(formats), origin_is_1904_(origin_is_1904) {}

  void start(std::string_view name, const XmlAttributes& attributes) override {
    if (name == "row") {
      at_.row = attributes.number("r", next_row_ + 1) - 1;
      next_row_ = at_.row + 1;
      at_.column = static_cast<std::size_t>(-1);
    } else if (name == "c") {
      startCell(attributes);
    } else if (name == "mergeCell") {
      merge(attributes["ref"]);
    } else {
      rich_text_.start(name);
      in_value_ = name == "v";
    }
  }

  void end(std::string_view name) override {
    rich_text_.end(name);
    in_value_ = false;
    if (name == "c") {
      endCell();
    }
  }

  void text(std::string_view text) override {
    rich_text_.text(text);
    if (in_value_) {
      value_ += text;
    }
  }

 private:
  /// Some programs leave out where rows and cells are: then they follow each other.
  void startCell(const XmlAttributes& attributes) {
    const std::string_view where = attributes["r"];
    at_ = where.empty() ? address{at_.row, at_.column + 1} : readAddress(where);
    kind_ = attributes["t"];
    format_ = attributes.number("s", 0);
    value_.clear();
    rich_text_.take();
  }

  void endCell() {
    if (kind_ == "s" && !value_.empty()) {
      cells_.set(at_.row, at_.column, texts_.of(value_));
    } else if (std::string text = cellText(); !text.empty()) {
      cells_.set(at_.row, at_.column, cells_.keepText(std::move(text)));
    }
  }

  std::string cellText() {
    if (kind_ == "inlineStr") {
      return rich_text_.take();
    }
    if (kind_ == "str" || kind_ == "e") {
      return unescaped(value_);
    }
    if (kind_ == "b") {
      return value_.empty() ? "" : value_ == "0" || value_ == "false" ? "no" : "yes";
    }
    if (kind_ == "d") {
      return shortenedDate(value_, formats_.of(format_).form);
    }
    double number = 0;
    const auto result = std::from_chars(value_.data(), value_.data() + value_.size(), number);
    if (result.ptr != value_.data() + value_.size()) {
      throw Failure("is damaged: a number cannot be read");
    }
    return value_.empty() ? "" : numberText(number, formats_.of(format_), origin_is_1904_);
  }

  void merge(std::string_view range) {
    const std::size_t colon = range.find(':');
    if (colon == std::string_view::npos) {
      return;
    }
    const address first = readAddress(range.substr(0, colon));
    const address last = readAddress(range.substr(colon + 1));
    if (first.column == last.column) {
      cells_.merge(first.row, last.row, first.column);
    }
  }

  SheetCells& cells_;
  const SharedTexts& texts_;
  const Formats& formats_;
  bool origin_is_1904_;
  address at_;
  std::size_t next_row_ = 0;
  std::string kind_;
  std::size_t format_ = 0;
  bool in_value_ = false;
  std::string value_;
  RichText rich_text_;
};

}  // namespace

bool isXlsx(const XmlParts& parts) {
  if (!parts.has(TOP_RELATIONS)) {
    return false;
  }
  const std::string book = Relations(parts, TOP_RELATIONS, "").only("officeDocument");
  return book.ends_with(".xml") && parts.has(book);
}

void readXlsx(const XmlParts& parts, SheetCells& cells) {
  const std::string book = Relations(parts, TOP_RELATIONS, "").only("officeDocument");
  const std::size_t slash = book.rfind('/') + 1;
  const std::string directory = book.substr(0, slash);
  const Relations relations(parts, directory + "_rels/" + book.substr(slash) + ".rels", directory);
  SheetList list;
  parts.parse(book, list);
  SharedTexts texts(cells);
  if (const std::string file = relations.only("sharedStrings"); !file.empty()) {
    parts.parse(file, texts);
  }
  Formats formats;
  if (const std::string file = relations.only("styles"); !file.empty()) {
    parts.parse(file, formats);
  }
  for (const auto& [name, id] : list.sheets) {
    if (const relation& file = relations.of(id); file.kind == "worksheet") {
      cells.beginSheet(name);
      SheetReader reader(cells, texts, formats, list.origin_is_1904);
      parts.parse(file.target, reader);
    }
  }
}

}  // namespace spx::console
