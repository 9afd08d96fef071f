#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/output/table.h"

namespace spx::console {

/// Writes a self-contained HTML page: it includes its style sheet and pictures. Texts may contain anything; markup in
/// them is escaped.
class HtmlPage {
 public:
  /// Returns the markup of a cell that is more than text, such as a link; an empty result means the plain text.
  using cell_markup = std::function<std::string(std::size_t row, std::size_t column)>;

  explicit HtmlPage(const std::string& title);

  /// Begins a section, which the table of contents lists, and ends the one before.
  void section(const std::string& id, const std::string& title);
  void subheading(const std::string& text, const std::string& id = {});
  void paragraph(const std::string& text);
  void list(const std::vector<std::string>& items);

  /// A table with its notes; the meanings of its columns unfold with a click.
  void table(const Table& table, const std::string& caption, const cell_markup& markup = {});

  /// A record as a line of large figures, each with its title.
  void figures(const std::vector<std::pair<std::string, std::string>>& values);

  /// An SVG picture with a caption; the table that it shows unfolds with a click.
  void picture(const std::string& svg, const std::string& caption, const Table& data);

  /// A picture alone, such as a pedigree.
  void picture(const std::string& svg, const std::string& caption);

  /// Adds the markup unchanged.
  void markup(const std::string& html);

  /// An image file in the title block. Throws Failure when it cannot be read or is not a PNG, JPEG or SVG file.
  void logo(const std::string& file);
  void titleLine(const std::string& text);

  /// The whole page.
  std::string text();

 private:
  void endSection();
  std::string svgWithOwnNames(std::string svg);

  std::string title_;
  std::string logo_;
  std::string title_lines_;
  std::string contents_;
  std::string body_;
  bool in_section_ = false;
  std::size_t pictures_ = 0;
};

/// A text as HTML, in content and in attributes.
std::string html(std::string_view text);

/// An identifier for a part of the page, made from a text: letters, digits, "-" and "_" only. Texts that look different
/// (visibleText) get different identifiers.
std::string anchor(const std::string& prefix, std::string_view text);

/// A link to a part of the same page.
std::string link(const std::string& anchor, std::string_view text);

}  // namespace spx::console
