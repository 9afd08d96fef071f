#include "console/report/html_page.h"

#include <cctype>
#include <fstream>
#include <iterator>
#include <utility>

#include "spx/support/xml_report.h"

#include "console/base/display_text.h"
#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/report/html_style.h"

namespace spx::console {
namespace {

bool isNumber(const table_column& column) {
  return column.alignment == ALIGNMENT::RIGHT ||
         (column.alignment == ALIGNMENT::BY_KIND &&
          (column.kind == COLUMN_KIND::INTEGER || column.kind == COLUMN_KIND::REAL ||
           column.kind == COLUMN_KIND::PERCENT));
}

std::string headerCell(const table_column& column) {
  return std::string("<th scope=\"col\"") + (isNumber(column) ? " class=\"n\">" : ">") + html(column.title) + "</th>";
}

std::string explanation(const Table& table, const table_part& part) {
  std::string out;
  for (const std::size_t at : part.columns) {
    const table_column& column = table.columns()[at];
    if (!column.help.empty()) {
      out += "<dt>" + html(column.title) + "</dt><dd>" + html(column.help) + "</dd>";
    }
  }
  return out.empty() ? "" : "<details><summary>What the columns mean</summary><dl>" + out + "</dl></details>\n";
}

std::string row(const Table& table, const table_part& part, std::size_t which, const HtmlPage::cell_markup& markup) {
  std::string out = "<tr>";
  for (const std::size_t at : part.columns) {
    const table_column& column = table.columns()[at];
    std::string content = markup ? markup(which, at) : std::string();
    if (content.empty()) {
      content = html(cellText(table.cell(which, at), column));
    }
    out += (isNumber(column) ? "<td class=\"n\">" : "<td>") + content + "</td>";
  }
  return out + "</tr>\n";
}

std::string notes(const Table& table) {
  std::string out;
  for (const std::string& note : table.notes) {
    out += "<p class=\"note\">" + html(note) + "</p>\n";
  }
  return out;
}

/// A record is shown line by line: the title of each value, then the value.
std::string recordMarkup(const Table& table, const std::string& caption) {
  const table_part part = wholeTable(table, OUTPUT_FORMAT::TEXT);
  std::string out = "<div class=\"scroll\"><table>\n<caption>" + html(caption) + "</caption>\n<tbody>\n";
  for (const std::size_t at : part.columns) {
    const table_column& column = table.columns()[at];
    const char* part_of_row_above = column.title.starts_with(' ') ? " class=\"part\"" : "";
    out += std::string("<tr><th scope=\"row\"") + part_of_row_above + ">" + html(column.title) + "</th>" +
           (isNumber(column) ? "<td class=\"n\">" : "<td>") + html(cellText(table.cell(0, at), column)) + "</td><td>" +
           html(column.help) + "</td></tr>\n";
  }
  return out + "</tbody></table></div>\n" + notes(table);
}

std::string tableMarkup(const Table& table, const std::string& caption, const HtmlPage::cell_markup& markup) {
  if (table.rows() == 0) {
    return "<p>" + html(table.if_empty.empty() ? "Nothing to show." : table.if_empty) + "</p>\n" + notes(table);
  }
  if (table.is_record) {
    return recordMarkup(table, caption);
  }
  const table_part part = wholeTable(table, OUTPUT_FORMAT::TEXT);
  std::string out = "<div class=\"scroll\"><table>\n<caption>" + html(caption) + "</caption>\n<thead><tr>";
  for (const std::size_t at : part.columns) {
    out += headerCell(table.columns()[at]);
  }
  out += "</tr></thead>\n<tbody>\n";
  for (const std::size_t which : part.rows) {
    out += row(table, part, which, markup);
  }
  return out + "</tbody></table></div>\n" + notes(table) + explanation(table, part);
}

std::string base64(const std::string& bytes) {
  static constexpr char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      out += i + k <= bytes.size() ? DIGITS[group >> (18 - 6 * k) & 63U] : '=';
    }
  }
  return out;
}

const char* imageType(const std::string& bytes) {
  if (bytes.starts_with("\x89PNG")) {
    return "image/png";
  }
  if (bytes.starts_with("\xFF\xD8\xFF")) {
    return "image/jpeg";
  }
  // An SVG file embedded as an image runs no scripts and loads nothing.
  return bytes.find("<svg") < 1000 ? "image/svg+xml" : nullptr;
}

void replaceAll(std::string& text, const std::string& old, const std::string& fresh) {
  for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + fresh.size())) {
    text.replace(at, old.size(), fresh);
  }
}

}  // namespace

HtmlPage::HtmlPage(const std::string& title) : title_(title) {}

void HtmlPage::endSection() {
  if (in_section_) {
    body_ += "</section>\n";
  }
  in_section_ = false;
}

void HtmlPage::section(const std::string& id, const std::string& title) {
  endSection();
  contents_ += "<li>" + link(id, title) + "</li>\n";
  body_ += "<section id=\"" + id + "\">\n<h2>" + html(title) + "</h2>\n";
  in_section_ = true;
}

void HtmlPage::subheading(const std::string& text, const std::string& id) {
  body_ += (id.empty() ? "<h3>" : "<h3 id=\"" + id + "\">") + html(text) + "</h3>\n";
}

void HtmlPage::paragraph(const std::string& text) {
  body_ += "<p>" + html(text) + "</p>\n";
}

void HtmlPage::list(const std::vector<std::string>& items) {
  body_ += "<ul>\n";
  for (const std::string& item : items) {
    body_ += "<li>" + html(item) + "</li>\n";
  }
  body_ += "</ul>\n";
}

void HtmlPage::table(const Table& table, const std::string& caption, const cell_markup& markup) {
  body_ += tableMarkup(table, caption, markup);
}

void HtmlPage::figures(const std::vector<std::pair<std::string, std::string>>& values) {
  body_ += "<div class=\"figures\">\n";
  for (const auto& [name, value] : values) {
    body_ += "<div><b>" + html(value) + "</b><span>" + html(name) + "</span></div>\n";
  }
  body_ += "</div>\n";
}

void HtmlPage::picture(const std::string& svg, const std::string& caption, const Table& data) {
  body_ += "<figure>\n" + svgWithOwnNames(svg) + "\n<figcaption>" + html(caption) +
           "</figcaption>\n<details><summary>The figures as a table</summary>\n" + tableMarkup(data, caption, {}) +
           "</details>\n</figure>\n";
}

void HtmlPage::picture(const std::string& svg, const std::string& caption) {
  body_ += "<figure>\n" + svgWithOwnNames(svg) + "\n<figcaption>" + html(caption) + "</figcaption>\n</figure>\n";
}

void HtmlPage::markup(const std::string& html) {
  body_ += html;
}

void HtmlPage::logo(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(in), {});
  if (!in.is_open() || in.bad() || bytes.empty()) {
    throw Failure("--logo: cannot read " + quotedText(file));
  }
  const char* type = imageType(bytes);
  if (type == nullptr) {
    throw Failure("--logo: " + quotedText(file) + " is not a PNG, JPEG or SVG file");
  }
  logo_ = std::string("<img alt=\"\" src=\"data:") + type + ";base64," + base64(bytes) + "\"/>\n";
}

void HtmlPage::titleLine(const std::string& text) {
  title_lines_ += "<p>" + html(text) + "</p>\n";
}

std::string HtmlPage::text() {
  endSection();
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>" +
         html(title_) + "</title>\n<style>" + HTML_STYLE + "</style>\n</head>\n<body>\n<header>\n" + logo_ + "<h1>" +
         html(title_) + "</h1>\n" + title_lines_ + "</header>\n<nav aria-label=\"Contents\">\n<ul>\n" + contents_ +
         "</ul>\n</nav>\n<main>\n" + body_ + "</main>\n</body>\n</html>\n";
}

/// Pictures from one tool use the same names for their parts; within one page every name must be unique.
std::string HtmlPage::svgWithOwnNames(std::string svg) {
  const std::string prefix = "p" + std::to_string(++pictures_) + "-";
  for (const char* quote : {"\"", "'"}) {
    replaceAll(svg, std::string(" id=") + quote, std::string(" id=") + quote + prefix);
    replaceAll(svg, std::string("href=") + quote + "#", std::string("href=") + quote + "#" + prefix);
  }
  replaceAll(svg, "url(#", "url(#" + prefix);
  return svg;
}

std::string html(std::string_view text) {
  std::string out;
  qs_lib::appendXmlText(out, visibleText(text), true);
  return out;
}

std::string anchor(const std::string& prefix, std::string_view text) {
  static constexpr char DIGITS[] = "0123456789abcdef";
  std::string out = prefix + "-";
  for (const char character : visibleText(text)) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80 && std::isalnum(byte) != 0) {
      out += character;
    } else {
      out += {'_', DIGITS[byte >> 4], DIGITS[byte & 15]};
    }
  }
  return out;
}

std::string link(const std::string& anchor, std::string_view text) {
  return "<a href=\"#" + anchor + "\"><bdi>" + html(text) + "</bdi></a>";
}

}  // namespace spx::console
