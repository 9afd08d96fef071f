#include <algorithm>

#include "spx/core/animal_data.h"
#include "spx/project/biology.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/charts/result_charts.h"
#include "console/check/check_studbook.h"
#include "console/report/report_sections.h"
#include "console/results/census_results.h"
#include "console/results/demography_page.h"
#include "console/results/findings_output.h"
#include "console/results/growth_results.h"
#include "console/results/reproduction_results.h"
#include "console/results/survival_results.h"

namespace spx::console {
namespace {

constexpr std::size_t MOST_FINDINGS = 10;  // of a kind; spx check --all lists every one

std::vector<finding> findings() {
  const qs_lib::day_number today = qs_lib::msToDay(qs_lib::dateToJulian(qs_lib::getTodayAsISO()));
  return checkStudbook({Animals.records, LifeHistory, MetaPop, today, {}});
}

Table findingTable(const std::vector<finding>& all) {
  Table table({{"severity", "Severity"}, {"code", "Kind"}, {"message", "Finding"}, {"suggestion", "What to do"}});
  std::size_t of_kind = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    of_kind = i > 0 && all[i].check == all[i - 1].check ? of_kind + 1 : 0;
    if (of_kind < MOST_FINDINGS) {
      table.addRow({severityName(all[i].severity()), codeOf(all[i].check).code, all[i].message, all[i].suggestion});
    }
  }
  return table;
}

Table kindTable(const std::vector<finding>& all) {
  Table table({{"severity", "Severity"},
               {"code", "Kind"},
               {"title", "What it is"},
               {.name = "findings", .title = "Findings", .kind = COLUMN_KIND::INTEGER}});
  for (std::size_t from = 0; from < all.size();) {
    std::size_t to = from;
    while (to < all.size() && all[to].check == all[from].check) {
      ++to;
    }
    const check_code& code = codeOf(all[from].check);
    table.addRow({severityName(all[from].severity()), code.code, code.title, to - from});
    from = to;
  }
  table.if_empty = "The check found no problems.";
  return table;
}

}  // namespace

void addChart(HtmlPage& page, report_context& context, const std::function<chart()>& make, const Table& data,
              const std::string& caption) {
  if (data.rows() > 0) {
    try {
      page.picture(drawChart(make()), caption, data);
      return;
    } catch (const Failure& failure) {
      const std::string reason = std::string("A chart is left out: ") + failure.what();
      if (std::find(context.left_out.begin(), context.left_out.end(), reason) == context.left_out.end()) {
        context.left_out.push_back(reason);
      }
    }
  }
  page.table(data, caption);
}

Table yearlyFigures(bool for_people) {
  const qs_lib::day_number day = View.monitor_date;
  Table table = demographyPage(for_people);
  View.monitor_date = day;
  return table;
}

void addQuality(HtmlPage& page, report_context&) {
  page.section("quality", "Data quality");
  const std::vector<finding> all = findings();
  page.paragraph("The check of the studbook found " + finding_counts(all).text() + ".");
  page.table(kindTable(all), "Findings by kind");
  if (!all.empty()) {
    page.table(findingTable(all), "The first findings of each kind; spx check --all lists every one");
  }
}

void addCensus(HtmlPage& page, report_context& context) {
  page.section("census", "Census");
  page.table(yearlyFigures(true), "The last twelve months, and the rates of the period");
  const Table table = censusTable();
  addChart(
      page, context, [&] { return censusChart(table, context.subtitle); }, table,
      "Animals present on each census day, and what changed their number");
}

void addAges(HtmlPage& page, report_context& context) {
  page.section("ages", "Age structure");
  const Table table = pyramidTable(timeUnit("years"), false);
  addChart(
      page, context, [&] { return pyramidChart(table, context.day_subtitle, "years"); }, table,
      "Animals by age and sex");
}

void addSurvival(HtmlPage& page, report_context& context) {
  page.section("survival", "Survival and life table");
  survival_choice choice;
  choice.by = "sex";
  const time_unit years = timeUnit("years");
  const Table steps = survivalTable(choice, years, false);
  const Table shown = survivalTable(choice, years, true);
  addChart(
      page, context, [&] { return survivalChart(steps, context.subtitle, "years"); }, shown,
      "The share of the animals that reaches each age (Kaplan & Meier 1958)");
  page.table(lifeTableTable(years), "Life table");
}

void addReproduction(HtmlPage& page, report_context& context) {
  page.section("reproduction", "Reproduction");
  const Table table = reproductionTable({}, timeUnit("years"), true);
  const Table counts = reproductionTable({}, timeUnit("years"), false);
  addChart(
      page, context, [&] { return birthsChart(counts, context.subtitle); }, table, "Births by month, and breeding");
}

void addGrowth(HtmlPage& page, report_context& context) {
  page.section("growth", "Growth and projection");
  page.table(growthTable({}, timeUnit("years")), "Growth by births and deaths, and by the census");
  try {
    const Table table = projectionTable({});
    addChart(
        page, context, [&] { return projectionChart(table, context.subtitle); }, table,
        "The numbers expected if births and deaths stay as they are");
  } catch (const UsageError& error) {
    context.left_out.push_back(std::string("The projection is left out: ") + error.what());
  }
}

}  // namespace spx::console
