#include "console/charts/chart.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "console/base/display_text.h"
#include "console/charts/drawing_tool.h"
#include "console/charts/svg_text.h"

namespace spx::console {
namespace {

constexpr int WIDTH = 620;
constexpr std::size_t MOST_TIC_NAMES = 12;  // along a horizontal axis

// Colours that colour-blind readers tell apart (Okabe & Ito 2008); blue, orange and the near white of the last one also
// differ as greys. Lines differ by their dashes too.
constexpr const char* PALETTE[] = {"#0072B2", "#E69F00", "#777777", "#009E73", "#CC79A7",
                                   "#56B4E9", "#D55E00", "#000000", "#EEEEEE"};

const char* colourOf(const chart_series& series, std::size_t place) {
  const std::size_t index = series.colour < 0 ? place : static_cast<std::size_t>(series.colour);
  return PALETTE[index % std::size(PALETTE)];
}

/// A text in gnuplot's single quotes, within which only the quote itself is special.
std::string quoted(const std::string& text) {
  std::string out = "'";
  for (const char character : visibleText(text)) {
    out += character;
    if (character == '\'') {
      out += character;
    }
  }
  return out + "'";
}

std::string number(double value) {
  return std::isfinite(value) ? shortestReal(value) : "NaN";
}

/// A named block of data in a gnuplot script: rows of numbers.
class DataBlock {
 public:
  explicit DataBlock(std::size_t place) : name_("$d" + std::to_string(place)) {}

  void row(std::initializer_list<double> values) {
    for (const double value : values) {
      rows_ += number(value) + " ";
    }
    rows_ += "\n";
  }
  const std::string& name() const { return name_; }
  std::string text() const { return name_ + " << END_OF_DATA\n" + rows_ + "END_OF_DATA\n"; }

 private:
  std::string name_;
  std::string rows_;
};

/// Adds the bars of a series on top of the previous ones; `tops` holds where they end.
void stackBars(const chart_series& series, std::vector<double>& tops, DataBlock& data) {
  tops.resize(std::max(tops.size(), series.y.size()), 0);
  for (std::size_t i = 0; i < series.y.size(); ++i) {
    const double value = std::isnan(series.y[i]) ? 0 : series.y[i];
    const auto at = static_cast<double>(i);
    if (value > 0) {
      data.row({at, tops[i], at - 0.4, at + 0.4, tops[i], tops[i] + value});
    }
    tops[i] += value;
  }
}

void fillRows(const chart_series& series, std::vector<double>& tops, DataBlock& data) {
  if (series.marks == MARKS::STACKED_BARS) {
    stackBars(series, tops, data);
    return;
  }
  for (std::size_t i = 0; i < series.x.size(); ++i) {
    switch (series.marks) {
      case MARKS::SIDE_BARS:
        data.row({series.x[i], series.y[i], std::min(series.x[i], series.x_end[i]),
                  std::max(series.x[i], series.x_end[i]), series.y[i] - 0.4, series.y[i] + 0.4});
        break;
      case MARKS::STEP_BAND:
        if (i > 0) {
          data.row({series.x[i], series.y[i - 1], series.y_end[i - 1]});
        }
        [[fallthrough]];
      case MARKS::BAND:
        data.row({series.x[i], series.y[i], series.y_end[i]});
        break;
      default:
        data.row({series.x[i], series.y[i]});
    }
  }
}

std::string style(const chart_series& series, std::size_t place) {
  const std::string colour = std::string(" lc rgb '") + colourOf(series, place) + "'";
  const auto colour_place = series.colour < 0 ? place : static_cast<std::size_t>(series.colour);
  const std::string dash = " dt " + std::to_string(colour_place % 5 + 1);
  switch (series.marks) {
    case MARKS::STACKED_BARS:
    case MARKS::SIDE_BARS:
      return " with boxxyerror fs solid 1 border rgb '#333333'" + colour;
    case MARKS::BAND:
    case MARKS::STEP_BAND:
      return " with filledcurves fs transparent solid 0.2 noborder" + colour;
    case MARKS::STEPS:
      return " with steps lw 2" + colour + dash;
    case MARKS::POINTS:
      return " with points pt 7 ps 0.5" + colour;
    default:
      return " with lines lw 2" + colour + dash;
  }
}

/// The names along an axis; when there are too many, only every n-th is shown.
std::string nameTics(const char* axis, const std::vector<std::string>& names, std::size_t most) {
  if (names.empty()) {
    return "";
  }
  const std::size_t step = (names.size() + most - 1) / most;
  std::string tics;
  for (std::size_t i = 0; i < names.size(); i += step) {
    tics += (tics.empty() ? "" : ", ") + quoted(names[i]) + " " + std::to_string(i);
  }
  return std::string("set ") + axis + "tics (" + tics + ")\nset " + axis +
         "range [-0.6:" + number(static_cast<double>(names.size()) - 0.4) + "]\n";
}

/// The name of each group next to its middle row, and lines between groups.
std::string groupTics(const std::vector<std::string>& groups) {
  std::string tics;
  std::string lines;
  for (std::size_t from = 0; from < groups.size();) {
    std::size_t to = from;
    while (to < groups.size() && groups[to] == groups[from]) {
      ++to;
    }
    tics += (from == 0 ? "" : ", ") + quoted(groups[from]) + " " + number(static_cast<double>(from + to - 1) / 2);
    if (to < groups.size()) {
      const std::string edge = number(static_cast<double>(to) - 0.5);
      lines += "set arrow from graph 0, first " + edge + " to graph 1, first " + edge +
               " nohead front lc rgb '#999999'\n" + "set arrow from first " + edge + ", graph 0 to first " + edge +
               ", graph 1 nohead front lc rgb '#999999'\n";
    }
    from = to;
  }
  return "set ytics (" + tics + ")\n" + lines;
}

std::string heading(const std::string& title, const std::string& subtitle, int height) {
  const double line = 1.0 / height;
  return "set label 1 " + quoted(title) + " at screen 0.02, screen " + number(1 - 24 * line) + " font ',16'\n" +
         "set label 2 " + quoted(subtitle) + " at screen 0.02, screen " + number(1 - 46 * line) +
         " textcolor rgb '#555555'\n" + "set tmargin at screen " + number(1 - 66 * line) + "\n";
}

std::string terminal(int height) {
  return "set terminal svg size " + std::to_string(WIDTH) + "," + std::to_string(height) +
         " dynamic noenhanced font 'sans-serif,13' background 'white'\n"
         "set encoding utf8\nset border 3 lc rgb '#555555'\nset tics nomirror out\n"
         "set grid back lc rgb '#dddddd' dt 1\n";
}

/// Whether stacked bars are so low that the scale would show halves of animals.
bool isOfFewAnimals(const chart& drawing) {
  constexpr double FEW = 5;
  std::vector<double> tops;
  for (const chart_series& series : drawing.series) {
    if (series.marks != MARKS::STACKED_BARS) {
      return false;
    }
    tops.resize(std::max(tops.size(), series.y.size()), 0);
    for (std::size_t at = 0; at < series.y.size(); ++at) {
      tops[at] += std::isnan(series.y[at]) ? 0 : series.y[at];
    }
  }
  return !tops.empty() && *std::max_element(tops.begin(), tops.end()) <= FEW;
}

std::string axes(const chart& drawing) {
  std::string out = "set xlabel " + quoted(drawing.x_label) + "\nset ylabel " + quoted(drawing.y_label) + "\n";
  if (drawing.y_names.empty()) {
    out += "set yrange [" + number(drawing.y_from) + ":" + (drawing.y_to > 0 ? number(drawing.y_to) : "*") + "]\n";
  }
  if (isOfFewAnimals(drawing)) {
    out += "set ytics 1\n";
  }
  out += nameTics("x", drawing.x_names, MOST_TIC_NAMES);
  out += nameTics("y", drawing.y_names, std::max<std::size_t>(1, static_cast<std::size_t>(drawing.height / 18)));
  if (drawing.absolute_x) {
    // gnuplot has no number format for absolute values, so every tic is labelled with its absolute value.
    double widest = 1;
    for (const chart_series& series : drawing.series) {
      for (std::size_t i = 0; i < series.x_end.size(); ++i) {
        widest = std::max({widest, std::abs(series.x[i]), std::abs(series.x_end[i])});
      }
    }
    const double step = std::max(1.0, std::ceil(widest / 4));
    std::string tics;
    for (double at = -std::ceil(widest / step) * step; at <= widest + step; at += step) {
      tics += (tics.empty() ? "" : ", ") + quoted(number(std::abs(at))) + " " + number(at);
    }
    out += "set xtics (" + tics + ")\nset xrange [" + number(-1.05 * widest) + ":" + number(1.05 * widest) + "]\n";
  }
  return out;
}

}  // namespace

std::string drawChart(const chart& drawing) {
  std::string script =
      terminal(drawing.height) + heading(drawing.title, drawing.subtitle, drawing.height) + axes(drawing);
  const bool has_key = std::any_of(drawing.series.begin(), drawing.series.end(),
                                   [](const chart_series& series) { return !series.name.empty(); });
  script += std::string("set key bmargin center horizontal noenhanced samplen 2\nset bmargin ") +
            (has_key ? "5.5" : "3.8") + "\n";
  std::vector<double> tops;
  std::string plots;
  for (std::size_t place = 0; place < drawing.series.size(); ++place) {
    const chart_series& series = drawing.series[place];
    DataBlock data(place);
    fillRows(series, tops, data);
    script += data.text();
    const std::string columns = series.marks == MARKS::STACKED_BARS || series.marks == MARKS::SIDE_BARS
                                    ? " using 1:2:3:4:5:6"
                                : series.marks == MARKS::BAND || series.marks == MARKS::STEP_BAND ? " using 1:2:3"
                                                                                                  : " using 1:2";
    plots += (plots.empty() ? "" : ", ") + data.name() + columns + style(series, place) +
             (series.name.empty() ? " notitle" : " title " + quoted(series.name));
  }
  return describedSvg(runTool(GNUPLOT, {"-"}, script + "plot " + plots + "\n"), drawing.title + ", " + drawing.subtitle,
                      drawing.description);
}

std::string drawHeatMap(const heat_map& drawing) {
  const auto count = static_cast<int>(drawing.names.size());
  const int side = drawing.groups.empty() ? 480 : 330;  // the names of groups need space next to the square
  const int cell = std::clamp(side / std::max(count, 1), 2, 26);
  constexpr int PIXELS_OF_LETTER = 8;
  std::size_t longest = 0;
  for (const std::string& name : drawing.names) {
    longest = std::max(longest, name.size());
  }
  const int height =
      std::max(320, 130 + cell * count + PIXELS_OF_LETTER * static_cast<int>(std::min<std::size_t>(longest, 40)));
  std::string script = terminal(height) + heading(drawing.title, drawing.subtitle, height);
  script +=
      "unset key\nunset grid\nset palette defined (0 '#f7fbff', 0.5 '#6baed6', 1 '#08306b')\n"
      "set cbrange [0:*]\nset xtics rotate by 90 right\nset yrange [] reverse\nset size ratio -1\nset cblabel " +
      quoted(drawing.scale_label) + "\n";
  const auto most = static_cast<std::size_t>(std::max(1, cell * count / 14));
  script += nameTics("x", drawing.names, most);
  script += drawing.groups.empty() ? nameTics("y", drawing.names, most) : groupTics(drawing.groups);
  script += "set yrange [" + number(count - 0.4) + ":-0.6]\n";
  DataBlock data(0);
  for (std::size_t row = 0; row < drawing.values.size(); ++row) {
    for (std::size_t column = 0; column < drawing.values[row].size(); ++column) {
      const auto x = static_cast<double>(column);
      const auto y = static_cast<double>(row);
      data.row({x, y, x - 0.5, x + 0.5, y - 0.5, y + 0.5, drawing.values[row][column]});
    }
  }
  script +=
      data.text() + "plot " + data.name() + " using 1:2:3:4:5:6:7 with boxxyerror fs solid 1 noborder lc palette\n";
  return describedSvg(runTool(GNUPLOT, {"-"}, script), drawing.title + ", " + drawing.subtitle, drawing.description);
}

}  // namespace spx::console
