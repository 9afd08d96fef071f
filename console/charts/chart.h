#pragma once

#include <string>
#include <vector>

namespace spx::console {

/// How the values of a series are drawn.
enum class MARKS {
  STACKED_BARS,  ///< a bar per category, each series on top of the one before
  SIDE_BARS,     ///< horizontal bars from x to x_end at y, as in a pyramid or a ranking
  LINE,          ///< through (x, y)
  STEPS,         ///< a line that keeps its value until the next x
  POINTS,        ///< one mark at each (x, y)
  BAND,          ///< the area between y and y_end
  STEP_BAND,     ///< the same, keeping its values until the next x
};

/// One set of values in a chart, with a colour of its own and an entry in the key. The vectors that its marks use have
/// equal lengths; NaN leaves a gap.
struct chart_series {
  std::string name;  ///< in the key; empty: no entry
  MARKS marks = MARKS::LINE;
  std::vector<double> x = {};  ///< not used by STACKED_BARS
  std::vector<double> y = {};
  std::vector<double> x_end = {};  ///< of SIDE_BARS
  std::vector<double> y_end = {};  ///< of the bands
  int colour = -1;                 ///< index in the palette; -1: the index of the series in the chart
};

/// A chart in words and numbers. Texts may hold anything.
struct chart {
  std::string title;                      ///< what is shown
  std::string subtitle;                   ///< which animals, and which period
  std::string description;                ///< what it shows, for those who cannot see it
  std::string x_label;                    ///< with the unit
  std::string y_label;                    ///< likewise
  std::vector<std::string> x_names = {};  ///< categories at x = 0, 1, ...; empty: a scale of numbers
  std::vector<std::string> y_names = {};  ///< categories at y = 0, 1, ...; likewise
  std::vector<chart_series> series = {};  ///< drawn in this order
  double y_from = 0;                      ///< where the vertical scale begins
  double y_to = 0;                        ///< where it ends; 0: as the values need
  bool absolute_x = false;                ///< shows -3 as 3, as the left half of a pyramid needs it
  int height = 420;                       ///< in pixels; the width is 620
};

/// Values in a square, such as the kinship of each pair.
struct heat_map {
  std::string title;
  std::string subtitle;
  std::string description;
  std::string scale_label;                  ///< of the colours
  std::vector<std::string> names;           ///< of the rows, which are the columns too
  std::vector<std::string> groups = {};     ///< what neighbouring rows have in common, row by row; empty: nothing
  std::vector<std::vector<double>> values;  ///< names.size() rows of as many values; NaN leaves a cell white
};

/// The chart as an SVG picture with a title and a description for screen readers; texts stay texts
/// and are not drawn as outlines. Throws Failure when gnuplot is missing or fails.
std::string drawChart(const chart& drawing);

/// The heat map likewise: one rectangle for each value.
std::string drawHeatMap(const heat_map& drawing);

}  // namespace spx::console
