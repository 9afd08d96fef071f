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
#include "console/output/animal_table.h"
#include "console/project/life_history.h"
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

// The summary before these sections and the list of omissions after them are always written.
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

/// The number of known locations of the living, and the number of animals at none of them.
struct places {
  std::size_t known = 0;
  std::size_t animals_elsewhere = 0;
};

places placesOf(const GeneticBasis& basis) {
  std::set<std::string> known;
  places found;
  for (const animal_number animal : basis.living()) {
    const std::string place = placeText(currentDeme(basis.record(animal), View.monitor_date));
    if (place.empty()) {
      ++found.animals_elsewhere;
    } else {
      known.insert(place);
    }
  }
  found.known = known.size();
  return found;
}

std::string percentAYear(double lambda) {
  return qs_lib::realToString(std::abs(100 * (lambda - 1)), 1) + " % a year";
}

bool isStable(double lambda) {
  return std::abs(lambda - 1) < 0.0005;
}

/// "grew by 2.1 % a year", for a growth factor of the past.
std::string pastGrowth(double lambda) {
  return isStable(lambda) ? "stayed the same" : (lambda > 1 ? "grew by " : "fell by ") + percentAYear(lambda);
}

/// "+2.1 %".
std::string signedPercent(double lambda) {
  return isStable(lambda) ? "0.0 %" : (lambda > 1 ? "+" : "") + qs_lib::realToString(100 * (lambda - 1), 1) + " %";
}

/// A figure of the demography page by its name; NaN for one that it does not have.
double figureOf(const Table& page, const std::string& name) {
  const std::vector<std::string> names = textsOf(page, "figure");
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? std::nan("")
                              : numbersOf(page, "value")[static_cast<std::size_t>(found - names.begin())];
}

/// The summary: a few figures at a glance, and sentences that say what they mean.
struct summary_text {
  std::vector<std::pair<std::string, std::string>> figures;
  std::vector<std::string> sentences;
};

void addNumbers(const GeneticBasis& basis, const report_context& context, summary_text& to) {
  const std::size_t living = basis.living().size();
  const places at = placesOf(basis);
  std::string where = at.known == 0 ? "; their locations are not recorded" : ", at " + counted(at.known, "place");
  if (at.known > 0 && at.animals_elsewhere > 0) {
    where += "; the location of " + std::to_string(at.animals_elsewhere) + " of them is not recorded";
  }
  to.sentences.push_back(counted(living, "animal") + (living == 1 ? " is" : " are") + " alive and present on " +
                         dayText(View.monitor_date) + where + ".");
  for (const std::string& note : basis.notes()) to.sentences.push_back(note);
  if (basis.undated() > 0) {
    to.sentences.push_back("The census and all other demography leave out animals without dates" +
                           (context.basis.undated == UNDATED::EXCLUDE
                                ? "."
                                : ": they count " + counted(basis.undated(), "animal") + " fewer than genetics."));
  }
  to.figures.emplace_back("animals alive", std::to_string(living));
  if (at.known > 0) {
    to.figures.emplace_back("places", std::to_string(at.known));
  }
}

void addGrowthOfNumbers(summary_text& to) {
  const Table page = yearlyFigures(false);
  const double ten_years = figureOf(page, "lambda by census, 10 years");
  const double period = figureOf(page, "lambda by census, whole period");
  if (!std::isnan(period)) {
    const std::string whole = std::string("over the whole period it ") + pastGrowth(period) + ".";
    to.sentences.push_back(std::isnan(ten_years)
                               ? "From census to census, the number of animals " + pastGrowth(period) + "."
                               : "In the last ten years the number of animals " + pastGrowth(ten_years) + "; " + whole);
    to.figures.emplace_back(std::isnan(ten_years) ? "a year, whole period" : "a year, last ten years",
                            signedPercent(std::isnan(ten_years) ? period : ten_years));
  }
  const bool males = View.sex == SEX::MALE;
  const double births = figureOf(page, males ? "lambda by life table, males" : "lambda by life table, females");
  if (!std::isnan(births)) {
    to.sentences.push_back(
        std::string("At the rates of births and deaths of the period, with no animal coming or "
                    "going, it would ") +
        (isStable(births) ? "stay the same" : (births > 1 ? "grow by " : "fall by ") + percentAYear(births)) + ".");
  }
}

void addGenes(const GeneticBasis& basis, summary_text& to) {
  if (basis.living().empty()) {
    return;
  }
  const Table record = geneticRecord(basis, UNKNOWN_PARENTS::FOUNDER);
  const double inbreeding = last(numbersOf(record, "mean_f"));
  const double diversity = last(numbersOf(record, "gene_diversity"));
  const std::string kept = decimals(100 * diversity, 1) + " %";
  to.sentences.push_back("Mean inbreeding of the living is " + decimals(inbreeding, 4) +
                         " (0 for unrelated parents, 0.25 for parents that are full sibs).");
  to.sentences.push_back("The living hold " + kept +
                         " of the gene diversity of the population that the founders came " + "from, as much as " +
                         decimals(last(numbersOf(record, "fg")), 1) + " unrelated founders would.");
  to.figures.emplace_back("mean inbreeding", decimals(inbreeding, 3));
  to.figures.emplace_back("gene diversity", kept);
}

/// Founders with living descendants that retain less than a quarter of their genes, the smallest share first.
std::vector<std::pair<double, std::string>> nearlyLost(const Table& founders) {
  constexpr double QUARTER = 0.25;
  const std::vector<std::string> ids = textsOf(founders, "id");
  const std::vector<double> retentions = numbersOf(founders, "retention");
  const std::vector<double> descendants = numbersOf(founders, "living_descendants");
  std::vector<std::pair<double, std::string>> found;
  for (std::size_t row = 0; row < ids.size(); ++row) {
    if (descendants[row] > 0 && retentions[row] < QUARTER) {
      found.emplace_back(retentions[row], ids[row]);
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

void addFounderSentences(const GeneticBasis& basis, report_context& context, summary_text& to) {
  constexpr std::size_t MOST = 6;
  const founder_states founders = founderStates(basis, basis.animals(), UNKNOWN_PARENTS::FOUNDER);
  const std::size_t with = founders.living + founders.represented;
  to.sentences.push_back(counted(with, "founder") + (with == 1 ? " has" : " have") + " living descendants; " +
                         std::to_string(founders.potential) + " without any could still breed; " +
                         std::to_string(founders.lost) + (founders.lost == 1 ? " is" : " are") + " lost.");
  const auto nearly = nearlyLost(foundersOf(context));
  to.figures.emplace_back("founders nearly lost", std::to_string(nearly.size()));
  if (nearly.empty()) {
    to.sentences.emplace_back("No founder with living descendants has less than a quarter of its genes left.");
    return;
  }
  std::string list;
  for (std::size_t at = 0; at < std::min(MOST, nearly.size()); ++at) {
    list += (at == 0 ? " " : ", ") + nearly[at].second + " (" + decimals(100 * nearly[at].first, 0) + " % left)";
  }
  to.sentences.push_back("Nearly lost, with less than a quarter of their genes left in the living:" + list +
                         (nearly.size() > MOST ? " and " + std::to_string(nearly.size() - MOST) + " more." : "."));
}

void addPairSentence(report_context& context, summary_text& to) {
  constexpr std::size_t MOST = 3;
  try {
    const Table& pairs = pairsOf(context);
    const std::vector<std::string> sires = textsOf(pairs, "sire");
    const std::vector<std::string> dams = textsOf(pairs, "dam");
    std::string list;
    for (std::size_t row = 0; row < std::min(MOST, sires.size()); ++row) {
      list += (row == 0 ? " " : ", ") + sires[row] + " with " + dams[row];
    }
    if (!list.empty()) {
      to.sentences.push_back("To keep the most gene diversity, pair next:" + list + "." +
                             (lacksReproductiveAges() ? " Their ages are not considered, because the life history has "
                                                        "no reproductive ages: check that they can breed."
                                                      : ""));
    }
  } catch (const Failure&) {
    // The section of pairs says why there are none.
  }
}

void addSummary(HtmlPage& page, const report_choice& choice, report_context& context) {
  page.section("summary", "Summary");
  const GeneticBasis basis(context.basis);
  summary_text summary;
  addNumbers(basis, context, summary);
  addGrowthOfNumbers(summary);
  addGenes(basis, summary);
  if (!basis.living().empty() && isWanted(choice, "founders")) {
    addFounderSentences(basis, context, summary);
  }
  if (!basis.living().empty() && isWanted(choice, "pairs")) {
    addPairSentence(context, summary);
  }
  page.figures(summary.figures);
  page.list(summary.sentences);
}

void addAssumptions(HtmlPage& page, const report_context& context) {
  page.section("assumptions", "What was assumed and left out");
  std::vector<std::string> lines = {
      "Animals count from the day of their birth or entry to that of their death, loss or departure.",
      "Each unknown parent counts as a separate, unrelated founder. Ancestors are those of the whole studbook, "
      "whatever the view.",
      "Retention is the result of " + std::to_string(context.gene_drops) + " gene drops with a fixed seed."};
  lines.insert(lines.end(), context.left_out.begin(), context.left_out.end());
  page.list(lines);
  page.paragraph("The notes below each table say how many animals it leaves out, and why.");
}

/// A section that the animals of the view cannot fill says why.
void addSection(HtmlPage& page, const report_section& section, report_context& context) {
  try {
    section.add(page, context);
  } catch (const Failure& failure) {
    page.paragraph(failure.what());
  }
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
  context.day_subtitle = choice.studbook + ": " + whoText() + ", on " + dayText(View.monitor_date);
  context.gene_drops = choice.gene_drops;
  context.basis = choice.basis;
  context.cards = choice.cards;
  context.links = isWanted(choice, "animals");
  addSummary(page, choice, context);
  for (const report_section& section : SECTIONS) {
    if (isWanted(choice, section.name)) {
      addSection(page, section, context);
    }
  }
  addAssumptions(page, context);
  return page.text();
}

}  // namespace spx::console
