#include "console/report/studbook_report.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "spx/core/animal_data.h"
#include "spx/support/julian_date.h"
#include "spx/support/number_text.h"
#include "spx/version.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/charts/table_values.h"
#include "console/report/html_page.h"
#include "console/report/report_sections.h"
#include "console/results/demography_notes.h"
#include "console/results/founder_tables.h"
#include "console/results/genetic_basis.h"
#include "console/results/genetic_summary.h"

namespace spx::console {
namespace {

struct report_section {
  const char* name;
  void (*add)(HtmlPage& page, report_context& context);
};

// The summary and what was left out frame these and are always there.
constexpr report_section SECTIONS[] = {
    {"census", addCensus}, {"ages", addAges},         {"survival", addSurvival}, {"reproduction", addReproduction},
    {"growth", addGrowth}, {"genetics", addGenetics}, {"founders", addFounders}, {"mean-kinship", addMeanKinship},
    {"pairs", addPairs},   {"animals", addAnimals},   {"quality", addQuality}};

bool isWanted(const report_choice& choice, const std::string& name) {
  return choice.sections.empty() ||
         std::find(choice.sections.begin(), choice.sections.end(), name) != choice.sections.end();
}

void checkSections(const report_choice& choice) {
  const std::vector<std::string>& known = reportSections();
  for (const std::string& name : choice.sections) {
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      throw UsageError("--sections: " + quotedText(name) + " is not a section of the report" + suggestion(name, known));
    }
  }
}

double last(const std::vector<double>& values) {
  return values.empty() ? std::nan("") : values.back();
}

std::string decimals(double value, int digits) {
  return std::isnan(value) ? "not known" : qs_lib::realToString(value, digits);
}

std::size_t placesOf(const GeneticBasis& basis) {
  std::set<packed_deme> places;
  for (const animal_number animal : basis.living()) {
    places.insert(currentDeme(basis.record(animal), View.monitor_date));
  }
  return places.size();
}

/// "grows by 2.1 % a year", for a growth factor.
std::string growthText(double lambda) {
  if (std::isnan(lambda)) {
    return "is not known to grow or decline";
  }
  const double percent = 100 * (lambda - 1);
  const std::string size = qs_lib::realToString(std::abs(percent), 1) + " % a year";
  return std::abs(percent) < 0.05 ? "is stable" : percent > 0 ? "grows by " + size : "declines by " + size;
}

/// A figure of the demography page by its name; NaN for one that it does not have.
double figureOf(const Table& page, const std::string& name) {
  const std::vector<std::string> names = textsOf(page, "figure");
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? std::nan("")
                              : numbersOf(page, "value")[static_cast<std::size_t>(found - names.begin())];
}

void addNumbers(const GeneticBasis& basis, std::vector<std::string>& sentences) {
  sentences.push_back(counted(basis.living().size(), "animal") + " of the view " +
                      (basis.living().size() == 1 ? "is" : "are") + " alive and present on " +
                      dayText(View.monitor_date) + ", at " + counted(placesOf(basis), "location") + ".");
  const Table page = yearlyFigures(false);
  sentences.push_back("By its census the population " + growthText(figureOf(page, "lambda by census, 10 years")) +
                      " over the last ten years, and " + growthText(figureOf(page, "lambda by census, whole period")) +
                      " over the whole period; by births and deaths alone it " +
                      growthText(figureOf(page, View.sex == SEX::MALE ? "lambda by life table, males"
                                                                      : "lambda by life table, females")) +
                      ".");
}

void addGenes(const GeneticBasis& basis, std::vector<std::string>& sentences) {
  if (basis.living().empty()) {
    return;
  }
  const Table record = geneticRecord(basis, UNKNOWN_PARENTS::FOUNDER);
  sentences.push_back("Mean inbreeding of the living is " + decimals(last(numbersOf(record, "mean_f")), 4) +
                      ", their gene diversity " + decimals(last(numbersOf(record, "gene_diversity")), 4) +
                      ", as much as " + decimals(last(numbersOf(record, "fg")), 1) + " founders would hold.");
  const founder_states founders = founderStates(basis, basis.living());
  sentences.push_back(counted(founders.living + founders.represented, "founder") + " have living descendants; " +
                      std::to_string(founders.potential) + " could still be bred from; " +
                      std::to_string(founders.lost) + " are lost.");
}

void addSummary(HtmlPage& page) {
  page.section("summary", "Summary");
  const GeneticBasis basis;
  std::vector<std::string> sentences;
  addNumbers(basis, sentences);
  addGenes(basis, sentences);
  page.list(sentences);
}

void addAssumptions(HtmlPage& page, const report_context& context) {
  page.section("assumptions", "What was assumed and left out");
  std::vector<std::string> lines = {
      "Animals count from the day of their birth or entry to that of their death, loss or departure.",
      "Each unknown parent counts as an unrelated founder of its own. Ancestors are those of the whole studbook, "
      "whatever the view.",
      "Retention is the result of " + std::to_string(context.gene_drops) + " gene drops with a fixed seed."};
  lines.insert(lines.end(), context.left_out.begin(), context.left_out.end());
  page.list(lines);
  page.paragraph("The notes below each table say how many animals it leaves out, and why.");
}

}  // namespace

const std::vector<std::string>& reportSections() {
  static const std::vector<std::string> NAMES = [] {
    std::vector<std::string> names;
    for (const report_section& section : SECTIONS) {
      names.emplace_back(section.name);
    }
    return names;
  }();
  return NAMES;
}

std::string studbookReport(const report_choice& choice) {
  checkSections(choice);
  HtmlPage page(choice.title.empty() ? "Studbook report: " + choice.studbook : choice.title);
  if (!choice.logo.empty()) {
    page.logo(choice.logo);
  }
  page.titleLine("View: " + viewText());
  page.titleLine("Made on " + qs_lib::getTodayAsISO() + " with spx " + libraryVersion());
  report_context context;
  context.subtitle = choice.studbook + ": " + viewText();
  context.gene_drops = choice.gene_drops;
  context.cards = choice.cards;
  context.links = isWanted(choice, "animals");
  addSummary(page);
  for (const report_section& section : SECTIONS) {
    if (isWanted(choice, section.name)) {
      section.add(page, context);
    }
  }
  addAssumptions(page, context);
  return page.text();
}

}  // namespace spx::console
