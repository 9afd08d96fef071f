#include "console/charts/result_charts.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "console/base/failure.h"
#include "console/charts/svg_text.h"
#include "console/charts/table_values.h"

namespace spx::console {
namespace {

constexpr int MALE = 0;
constexpr int FEMALE = 1;
constexpr int UNKNOWN = 8;
constexpr int UNKNOWN_LINE = 2;  // the near white of bars would not be seen

std::string shortNumber(double value) {
  return shortestReal(std::round(value * 100) / 100);
}

/// A series in words: "from 3 (1990) to 40 (2024)".
std::string course(const std::vector<double>& values, const std::vector<std::string>& names) {
  return values.empty() ? "no values"
                        : "from " + shortNumber(values.front()) + " (" + names.front() + ") to " +
                              shortNumber(values.back()) + " (" + names.back() + ")";
}

}  // namespace

chart censusChart(const Table& census, const std::string& subtitle) {
  chart out{.title = "Animals at each census",
            .subtitle = subtitle,
            .description = "",
            .x_label = "year of the census",
            .y_label = "animals"};
  out.x_names = yearsOf(census, "date");
  const std::vector<double> totals = numbersOf(census, "total");
  if (std::all_of(totals.begin(), totals.end(), [](double total) { return total == 0; })) {
    throw Failure("no animals are present on any census day: there is nothing to draw");
  }
  out.description = "The number of animals changes " + course(totals, out.x_names) + ".";
  out.series = {
      {.name = "males", .marks = MARKS::STACKED_BARS, .y = numbersOf(census, "males"), .colour = MALE},
      {.name = "females", .marks = MARKS::STACKED_BARS, .y = numbersOf(census, "females"), .colour = FEMALE},
      {.name = "unknown sex", .marks = MARKS::STACKED_BARS, .y = numbersOf(census, "unknown"), .colour = UNKNOWN}};
  return out;
}

chart pyramidChart(const Table& pyramid, const std::string& subtitle, const std::string& unit) {
  chart out{.title = "Age pyramid",
            .subtitle = subtitle,
            .description = "Males on the left, females on the right, the oldest at the top.",
            .x_label = "animals",
            .y_label = "age (" + unit + ")"};
  std::vector<double> ages = numbersOf(pyramid, "age");
  std::vector<double> males = numbersOf(pyramid, "males");
  std::vector<double> females = numbersOf(pyramid, "females");
  std::vector<double> unknown = numbersOf(pyramid, "unknown");
  // The number of classes up to the oldest animal; the row without an age is not counted.
  std::size_t rows = 0;
  for (std::size_t i = 0; i < ages.size(); ++i) {
    if (!std::isnan(ages[i]) && males[i] + females[i] + unknown[i] > 0) {
      rows = i + 1;
    }
  }
  chart_series left{.name = "males", .marks = MARKS::SIDE_BARS, .colour = MALE};
  chart_series right{.name = "females", .marks = MARKS::SIDE_BARS, .colour = FEMALE};
  chart_series beyond{.name = "unknown sex", .marks = MARKS::SIDE_BARS, .colour = UNKNOWN};
  for (std::size_t i = 0; i < rows; ++i) {
    out.y_names.push_back(shortNumber(ages[i]));
    const auto at = static_cast<double>(i);
    const auto bar = [at](chart_series& series, double from, double to) {
      if (from != to) {
        series.x.push_back(from);
        series.x_end.push_back(to);
        series.y.push_back(at);
      }
    };
    bar(left, -males[i], 0);
    bar(right, 0, females[i]);
    bar(beyond, females[i], females[i] + unknown[i]);
  }
  out.series = {left, right, beyond};
  out.absolute_x = true;
  out.height = std::max(320, 140 + 16 * static_cast<int>(rows));
  return out;
}

chart survivalChart(const Table& survival, const std::string& subtitle, const std::string& unit) {
  chart out{.title = "Survival",
            .subtitle = subtitle,
            .description = "The share of the animals that reaches each age; bands are 95 % intervals.",
            .x_label = "age (" + unit + ")",
            .y_label = "share that is alive"};
  const std::vector<std::string> groups = textsOf(survival, "group");
  const std::vector<double> times = numbersOf(survival, "time");
  const std::vector<double> shares = numbersOf(survival, "survival");
  const std::vector<double> lower = numbersOf(survival, "lower");
  const std::vector<double> upper = numbersOf(survival, "upper");
  // The sexes have their colours of the other charts.
  const auto has = [&groups](const char* name) {
    return std::find(groups.begin(), groups.end(), name) != groups.end();
  };
  int others = has("male") || has("female") ? UNKNOWN_LINE : 0;
  for (std::size_t from = 0; from < groups.size();) {
    const int colour = groups[from] == "male" ? MALE : groups[from] == "female" ? FEMALE : others++;
    chart_series curve{.name = groups[from], .marks = MARKS::STEPS, .x = {0}, .y = {1}, .colour = colour};
    chart_series band{.name = "", .marks = MARKS::STEP_BAND, .x = {0}, .y = {1}, .y_end = {1}, .colour = colour};
    std::size_t to = from;
    for (; to < groups.size() && groups[to] == groups[from]; ++to) {
      curve.x.push_back(times[to]);
      curve.y.push_back(shares[to]);
      if (!std::isnan(lower[to])) {
        band.x.push_back(times[to]);
        band.y.push_back(lower[to]);
        band.y_end.push_back(upper[to]);
      }
    }
    out.series.push_back(std::move(band));
    out.series.push_back(std::move(curve));
    from = to;
  }
  out.y_to = 1;
  return out;
}

chart birthsChart(const Table& reproduction, const std::string& subtitle) {
  chart out{.title = "Births by month",
            .subtitle = subtitle,
            .description = "Births whose month is known.",
            .x_label = "month",
            .y_label = "births",
            .x_names = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"}};
  chart_series births{.name = "", .marks = MARKS::STACKED_BARS, .y = std::vector<double>(12, 0.0)};
  const std::vector<std::string> measures = textsOf(reproduction, "measure");
  const std::vector<double> counts = numbersOf(reproduction, "n");
  for (std::size_t row = 0; row < measures.size(); ++row) {
    for (std::size_t month = 0; month < 12; ++month) {
      if (measures[row] == "births_in_month_" + std::to_string(month + 1)) {
        births.y[month] = counts[row];
      }
    }
  }
  if (std::all_of(births.y.begin(), births.y.end(), [](double number) { return number == 0; })) {
    throw Failure("no births of a known month: there is nothing to draw");
  }
  out.series = {births};
  return out;
}

chart projectionChart(const Table& projection, const std::string& subtitle) {
  chart out{.title = "Expected numbers",
            .subtitle = subtitle,
            .description = "Assumes that births and deaths stay as they are. The band holds 95 % of the random runs.",
            .x_label = "years from now",
            .y_label = "animals"};
  const std::vector<double> years = numbersOf(projection, "year");
  out.series = {{.name = "95 % of runs",
                 .marks = MARKS::BAND,
                 .x = years,
                 .y = numbersOf(projection, "lower"),
                 .y_end = numbersOf(projection, "upper"),
                 .colour = 0},
                {.name = "median", .marks = MARKS::LINE, .x = years, .y = numbersOf(projection, "median"), .colour = 0},
                {.name = "without chance",
                 .marks = MARKS::LINE,
                 .x = years,
                 .y = numbersOf(projection, "expected"),
                 .colour = 6}};
  return out;
}

chart foundersChart(const Table& founders, const std::string& subtitle, std::size_t most) {
  chart out{.title = "Founders: contribution and retention",
            .subtitle = subtitle,
            .description = "",
            .x_label = "contribution: % of the genes of the living; retention: % of the founder's genes",
            .y_label = ""};
  const std::vector<std::string> names = textsOf(founders, "id");
  const std::vector<double> contributions = numbersOf(founders, "contribution");
  const std::vector<double> retentions = numbersOf(founders, "retention");
  std::vector<std::size_t> order(names.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&contributions](std::size_t a, std::size_t b) { return contributions[a] > contributions[b]; });
  const std::size_t shown = std::min(most, order.size());
  chart_series contribution{.name = "contribution", .marks = MARKS::SIDE_BARS, .colour = 0};
  chart_series retention{.name = "retention", .marks = MARKS::POINTS, .colour = 6};
  for (std::size_t rank = 0; rank < shown; ++rank) {
    const std::size_t founder = order[shown - 1 - rank];
    const auto at = static_cast<double>(rank);
    out.y_names.push_back(names[founder]);
    contribution.x.push_back(0);
    contribution.x_end.push_back(100 * contributions[founder]);
    contribution.y.push_back(at);
    retention.x.push_back(100 * retentions[founder]);
    retention.y.push_back(at);
  }
  out.series = {contribution, retention};
  out.description = std::to_string(names.size()) + " founders" +
                    (shown < names.size() ? "; the " + std::to_string(shown) + " largest are shown" : "") + ".";
  out.height = 150 + 18 * static_cast<int>(std::max<std::size_t>(shown, 6));
  return out;
}

chart inbreedingChart(const Table& by_year, const std::string& subtitle) {
  chart out{.title = "Inbreeding by year of birth",
            .subtitle = subtitle,
            .description = "",
            .x_label = "year of birth",
            .y_label = "mean inbreeding coefficient F"};
  const std::vector<double> years = numbersOf(by_year, "year");
  const std::vector<double> values = numbersOf(by_year, "mean_f");
  out.description = "Mean inbreeding changes " + course(values, textsOf(by_year, "year")) + ".";
  out.series = {{.name = "", .marks = MARKS::LINE, .x = years, .y = values},
                {.name = "", .marks = MARKS::POINTS, .x = years, .y = values, .colour = 0}};
  return out;
}

chart diversityChart(const Table& by_year, const std::string& subtitle) {
  chart out{.title = "Gene diversity over the years",
            .subtitle = subtitle,
            .description = "",
            .x_label = "year (31 December)",
            .y_label = "gene diversity of the living"};
  const std::vector<double> years = numbersOf(by_year, "year");
  const std::vector<double> values = numbersOf(by_year, "gene_diversity");
  out.description = "Gene diversity changes " + course(values, textsOf(by_year, "year")) + ".";
  out.series = {{.name = "", .marks = MARKS::LINE, .x = years, .y = values}};
  double least = 1;
  for (const double value : values) {
    least = std::isnan(value) ? least : std::min(least, value);
  }
  out.y_from = std::floor(least * 10) / 10;
  out.y_to = 1;
  return out;
}

}  // namespace spx::console
