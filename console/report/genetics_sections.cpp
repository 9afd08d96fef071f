#include <algorithm>
#include <memory>

#include "console/base/failure.h"
#include "console/charts/result_charts.h"
#include "console/charts/table_values.h"
#include "console/report/report_sections.h"
#include "console/results/animal_genetics.h"
#include "console/results/founder_tables.h"
#include "console/results/genetic_basis.h"
#include "console/results/genetic_summary.h"
#include "console/results/genetics_by_year.h"
#include "console/results/pair_tables.h"

namespace spx::console {
namespace {

constexpr UNKNOWN_PARENTS UNKNOWN = UNKNOWN_PARENTS::FOUNDER;
constexpr std::size_t PAIRS = 10;

/// Cells of the columns with these names become links to the cards of animals.
HtmlPage::cell_markup linkedAnimals(const report_context& context, const Table& table,
                                    const std::vector<std::string>& names) {
  if (!context.links) {
    return {};
  }
  auto columns = std::make_shared<std::vector<std::pair<std::size_t, std::vector<std::string>>>>();
  for (std::size_t at = 0; at < table.columns().size(); ++at) {
    if (std::find(names.begin(), names.end(), table.columns()[at].name) != names.end()) {
      columns->emplace_back(at, textsOf(table, table.columns()[at].name));
    }
  }
  return [columns](std::size_t row, std::size_t column) {
    for (const auto& [at, ids] : *columns) {
      if (at == column && !ids[row].empty()) {
        return link(anchor("animal", ids[row]), ids[row]);
      }
    }
    return std::string();
  };
}

}  // namespace

const Table& foundersOf(report_context& context) {
  if (!context.founders) {
    gene_drop_options drop;
    drop.runs = context.gene_drops;
    drop.threads = GeneticBasis::threads();
    context.founders = foundersTable(GeneticBasis(context.basis), UNKNOWN, drop);
  }
  return *context.founders;
}

const Table& pairsOf(report_context& context) {
  if (!context.pairs) {
    pair_choice choice;
    choice.picks = PAIRS;
    context.pairs = pairsTable(GeneticBasis(context.basis), choice, UNKNOWN);
  }
  return *context.pairs;
}

void addGenetics(HtmlPage& page, report_context& context) {
  page.section("genetics", "Genetics");
  const GeneticBasis basis(context.basis);
  page.table(geneticPage(basis, UNKNOWN), "The genetic state of the population");
  const Table inbreeding = inbreedingByYear();
  addChart(
      page, context, [&] { return inbreedingChart(inbreeding, context.subtitle); }, inbreeding,
      "Mean inbreeding by year of birth");
  const Table diversity = diversityByYear();
  addChart(
      page, context, [&] { return diversityChart(diversity, context.subtitle); }, diversity,
      "Gene diversity of the living at the end of each year");
}

void addFounders(HtmlPage& page, report_context& context) {
  page.section("founders", "Founders");
  page.paragraph(
      "Founders are the animals without parents in the studbook. A founder's retention is the share of its "
      "genes that is left; where it is low, the descendants of that founder should breed.");
  const Table& table = foundersOf(context);
  addChart(
      page, context, [&] { return foundersChart(table, context.day_subtitle); }, table,
      "What each founder contributes to the living, and what is left of its genes");
}

void addMeanKinship(HtmlPage& page, report_context& context) {
  page.section("mean-kinship", "Mean kinship");
  page.paragraph("The animals with the lowest mean kinship carry the rarest genes; they should breed first.");
  const Table table = meanKinshipTable(GeneticBasis(context.basis), UNKNOWN);
  page.table(table, "The living, from the lowest mean kinship to the highest", linkedAnimals(context, table, {"id"}));
}

void addPairs(HtmlPage& page, report_context& context) {
  page.section("pairs", "Best pairs");
  try {
    const Table& table = pairsOf(context);
    page.paragraph("Picked one after the other, each assuming that every pair before it has one offspring.");
    page.table(table, "The pairs that keep gene diversity highest", linkedAnimals(context, table, {"sire", "dam"}));
  } catch (const Failure& failure) {
    page.paragraph(failure.what());
    context.left_out.push_back(std::string("Best pairs are left out: ") + failure.what());
  }
}

}  // namespace spx::console
