#pragma once

#include <functional>
#include <optional>
#include <string>

#include "console/charts/chart.h"
#include "console/output/table.h"
#include "console/report/html_page.h"
#include "console/results/genetic_basis.h"

/// The sections of the report. Each computes what it shows from Animals and View.
namespace spx::console {

/// What the sections share.
struct report_context {
  std::string subtitle;      ///< of charts: which animals, and in which period
  std::string day_subtitle;  ///< of charts of one day: which animals, and the day
  std::size_t gene_drops = 1000;
  basis_options basis = {};           ///< of genetics
  bool cards = false;                 ///< whether each card shows the ancestors, up to the great-grandparents
  bool links = true;                  ///< the page has cards that IDs can link to
  std::vector<std::string> left_out;  ///< what could not be shown and why, gathered by the sections
  std::optional<Table> founders;      ///< by foundersOf
  std::optional<Table> pairs;         ///< by pairsOf
};

/// foundersTable() of the living, computed once.
const Table& foundersOf(report_context& context);

/// The pairs that should breed first, computed once. Throws Failure when there are none.
const Table& pairsOf(report_context& context);

/// Adds the chart with its table; where the chart cannot be drawn, the table alone, and a line of `left_out`.
void addChart(HtmlPage& page, report_context& context, const std::function<chart()>& make, const Table& data,
              const std::string& caption);

/// demographyPage() with the monitor date of View restored afterwards, so that later sections use the same day.
Table yearlyFigures(bool for_people);

void addQuality(HtmlPage& page, report_context& context);
void addCensus(HtmlPage& page, report_context& context);
void addAges(HtmlPage& page, report_context& context);
void addSurvival(HtmlPage& page, report_context& context);
void addReproduction(HtmlPage& page, report_context& context);
void addGrowth(HtmlPage& page, report_context& context);
void addGenetics(HtmlPage& page, report_context& context);
void addFounders(HtmlPage& page, report_context& context);
void addMeanKinship(HtmlPage& page, report_context& context);
void addPairs(HtmlPage& page, report_context& context);
void addAnimals(HtmlPage& page, report_context& context);

}  // namespace spx::console
