#pragma once

#include <cstddef>
#include <string_view>

#include <orcus/spreadsheet/import_interface.hpp>

namespace spx::console {

/// The styles of a workbook, of which only number formats say anything about the cells: all other
/// calls are accepted and ignored.
class IgnoredStyles : public orcus::spreadsheet::iface::import_styles {
 public:
  using color = orcus::spreadsheet::color_elem_t;

  void set_font_count(std::size_t) override {}
  void set_font_bold(bool) override {}
  void set_font_italic(bool) override {}
  void set_font_name(std::string_view) override {}
  void set_font_size(double) override {}
  void set_font_underline(orcus::spreadsheet::underline_t) override {}
  void set_font_underline_width(orcus::spreadsheet::underline_width_t) override {}
  void set_font_underline_mode(orcus::spreadsheet::underline_mode_t) override {}
  void set_font_underline_type(orcus::spreadsheet::underline_type_t) override {}
  void set_font_underline_color(color, color, color, color) override {}
  void set_font_color(color, color, color, color) override {}
  void set_strikethrough_style(orcus::spreadsheet::strikethrough_style_t) override {}
  void set_strikethrough_type(orcus::spreadsheet::strikethrough_type_t) override {}
  void set_strikethrough_width(orcus::spreadsheet::strikethrough_width_t) override {}
  void set_strikethrough_text(orcus::spreadsheet::strikethrough_text_t) override {}
  std::size_t commit_font() override { return fonts_++; }

  void set_fill_count(std::size_t) override {}
  void set_fill_pattern_type(orcus::spreadsheet::fill_pattern_t) override {}
  void set_fill_fg_color(color, color, color, color) override {}
  void set_fill_bg_color(color, color, color, color) override {}
  std::size_t commit_fill() override { return fills_++; }

  void set_border_count(std::size_t) override {}
  void set_border_style(orcus::spreadsheet::border_direction_t, orcus::spreadsheet::border_style_t) override {}
  void set_border_color(orcus::spreadsheet::border_direction_t, color, color, color, color) override {}
  void set_border_width(orcus::spreadsheet::border_direction_t, double, orcus::length_unit_t) override {}
  std::size_t commit_border() override { return borders_++; }

  void set_cell_hidden(bool) override {}
  void set_cell_locked(bool) override {}
  void set_cell_print_content(bool) override {}
  void set_cell_formula_hidden(bool) override {}
  std::size_t commit_cell_protection() override { return protections_++; }

  void set_cell_xf_count(std::size_t) override {}
  void set_cell_style_xf_count(std::size_t) override {}
  void set_dxf_count(std::size_t) override {}
  void set_xf_font(std::size_t) override {}
  void set_xf_fill(std::size_t) override {}
  void set_xf_border(std::size_t) override {}
  void set_xf_protection(std::size_t) override {}
  void set_xf_style_xf(std::size_t) override {}
  void set_xf_apply_alignment(bool) override {}
  void set_xf_horizontal_alignment(orcus::spreadsheet::hor_alignment_t) override {}
  void set_xf_vertical_alignment(orcus::spreadsheet::ver_alignment_t) override {}

  void set_cell_style_count(std::size_t) override {}
  void set_cell_style_name(std::string_view) override {}
  void set_cell_style_xf(std::size_t) override {}
  void set_cell_style_builtin(std::size_t) override {}
  void set_cell_style_parent_name(std::string_view) override {}
  std::size_t commit_cell_style() override { return cell_styles_++; }

 private:
  std::size_t fonts_ = 0;
  std::size_t fills_ = 0;
  std::size_t borders_ = 0;
  std::size_t protections_ = 0;
  std::size_t cell_styles_ = 0;
};

}  // namespace spx::console
