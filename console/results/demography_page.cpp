#include "console/results/demography_page.h"

#include <algorithm>
#include <cmath>

#include "spx/core/animal_data.h"
#include "spx/core/estimated_dates.h"
#include "spx/demography/census.h"
#include "spx/demography/growth.h"
#include "spx/demography/life_table.h"
#include "spx/demography/reproduction.h"
#include "spx/demography/survival.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

/// The figures of a year, section by section.
class Figures {
 public:
  explicit Figures(bool for_people) : for_people_(for_people), table_(columns(for_people)) {}

  void section(const char* name) { section_ = name; }

  void count(const char* figure, std::size_t value) { addRow(figure, {cell(static_cast<double>(value), 0)}); }
  void value(const char* figure, double value, double lower = NOT_KNOWN, double upper = NOT_KNOWN) {
    std::vector<Cell> cells = {cell(value, DECIMALS)};
    if (!for_people_ || !std::isnan(lower) || !std::isnan(upper)) {
      cells.insert(cells.end(), {cell(lower, DECIMALS), cell(upper, DECIMALS)});
    }
    addRow(figure, std::move(cells));
  }
  Table& table() { return table_; }

 private:
  static constexpr int DECIMALS = 3;

  static std::vector<table_column> columns(bool for_people) {
    const COLUMN_KIND kind = for_people ? COLUMN_KIND::TEXT : COLUMN_KIND::REAL;
    const auto number = [kind](const char* name, const char* title, const char* help) {
      return table_column{.name = name, .title = title, .kind = kind, .help = help, .alignment = ALIGNMENT::RIGHT};
    };
    return {{.name = "section", .title = "Section"},
            {.name = "figure",
             .title = "Figure",
             .help = "lambda: growth factor per year, 1.02 is 2 % more a year; R0: expected offspring of its own "
                     "sex of a newborn"},
            number("value", "Value", ""),
            number("lower", "Lower", "95 % interval, where there is one"),
            number("upper", "Upper", "")};
  }

  Cell cell(double value, int decimals) const {
    if (!for_people_) return value;
    return std::isnan(value) ? "-" : qs_lib::realToString(value, decimals);
  }

  void addRow(const char* figure, std::vector<Cell> cells) {
    cells.insert(cells.begin(), {section_, figure});
    table_.addRow(std::move(cells));
    if (for_people_) section_ = "";
  }

  bool for_people_;
  Table table_;
  const char* section_ = "";
};

void addCensusGrowth(Figures& to, const Presence& presence) {
  to.section("Growth");
  to.value("lambda by census, whole period", censusLambda(presence, View));
  DataFilter decade = View;
  qs_lib::civil_date start = qs_lib::civilFromDay(View.end_date);
  start.year -= 10;
  start.day = std::min(start.day, qs_lib::daysInMonth(start.year, start.month));
  decade.start_date = qs_lib::dayFromCivil(start).value_or(View.start_date);
  if (decade.start_date >= std::max(View.start_date, firstDay(presence))) {
    to.value("lambda by census, 10 years", censusLambda(presence, decade));
  }
}

void addPopulation(Figures& to, const Presence& presence) {
  DataFilter yearly = View;
  yearly.census_interval = qs_lib::TIME_INTERVAL::ANNUAL;
  const qs_lib::civil_date end = qs_lib::civilFromDay(View.end_date);
  yearly.census_day = static_cast<int>(end.day);
  yearly.census_month = static_cast<int>(end.month);
  const std::vector<census_row> rows = census(presence, censusDays(yearly, firstDay(presence)));
  to.section("Population");
  if (rows.empty()) return to.count("animals", 0);
  const census_row& now = rows.back();
  to.count("animals", now.present.total());
  to.count("males", now.present.males);
  to.count("females", now.present.females);
  to.count("unknown sex", now.present.unknown);
  to.section("Last 12 months");
  if (rows.size() > 1) to.count("animals a year ago", rows[rows.size() - 2].present.total());
  to.count("births", now.births);
  to.count("deaths", now.deaths);
  to.count("entries", now.entries);
  to.count("departures", now.departures);
  to.count("losses", now.losses);
}

// Growth by the females, unless the view includes males only.
void addGrowth(Figures& to, const life_tallies& data) {
  const bool males = View.sex == SEX::MALE;
  const SEX line = males ? SEX::MALE : SEX::FEMALE;
  const auto rows = lifeTable(data.of(0, line), data.classes, line, View.same_sex);
  const growth_rates growth = growthRates(rows, PARENT_AGE::MIDDLE);
  to.value(males ? "lambda by life table, males" : "lambda by life table, females", growth.lambda);
  to.value(males ? "net reproductive rate R0, males" : "net reproductive rate R0, females", growth.r0);
  to.value("generation time, years", growth.generation_time / DAYS_PER_YEAR);
}

void addSurvival(Figures& to, const survival_data& data) {
  to.section("Survival");
  const survival_curve curve = kaplanMeier(data.times);
  const std::pair<double, const char*> AGES[] = {{30, "survival to 30 days"}, {DAYS_PER_YEAR, "survival to 1 year"}};
  for (const auto& [age, figure] : AGES) {
    const survival_step step = stepAt(curve, age);
    to.value(figure, step.survival, step.lower, step.upper);
  }
  to.value("median life, years", curve.median / DAYS_PER_YEAR, curve.median_lower / DAYS_PER_YEAR,
           curve.median_upper / DAYS_PER_YEAR);
}

void addReproduction(Figures& to, const reproduction_summary& summary) {
  to.section("Reproduction");
  to.value("share of males at birth", summary.male_share, summary.male_share_interval.lower,
           summary.male_share_interval.upper);
  for (const parent_summary* parents : {&summary.females, &summary.males}) {
    const bool dams = parents == &summary.females;
    if (View.sex == (dams ? SEX::MALE : SEX::FEMALE)) continue;
    const auto& first = parents->first;
    to.value(dams ? "age at first birth, years, dams" : "age at first birth, years, sires", first.mean / DAYS_PER_YEAR,
             first.confidence_interval.lower / DAYS_PER_YEAR, first.confidence_interval.upper / DAYS_PER_YEAR);
    const auto breeders = static_cast<double>(parents->breeders);
    const auto adults = static_cast<double>(parents->adults);
    const auto interval = wilsonInterval(breeders, adults);
    to.value(dams ? "share of adult females that have bred" : "share of adult males that have bred",
             adults > 0 ? breeders / adults : NOT_KNOWN, interval.lower, interval.upper);
  }
  to.value("litter size", summary.litters.mean, summary.litters.confidence_interval.lower,
           summary.litters.confidence_interval.upper);
}

}  // namespace

Table demographyPage(bool for_people) {
  View.monitor_date = View.end_date;
  const presence_settings settings = presenceSettings(View);
  const Presence presence(Animals.records, View, settings);
  const survival_data lives = survivalData(Animals.records, View, settings, {});
  Figures figures(for_people);
  addPopulation(figures, presence);
  addCensusGrowth(figures, presence);
  addGrowth(figures, lifeTallies(Animals, View, settings, ageClasses(View), gestationDays()));
  addSurvival(figures, lives);
  addReproduction(figures, reproductionOf(Animals, View, settings, reproductionSettings()));
  Table& table = figures.table();
  table.heading = "Demography: " + viewText();
  table.notes.push_back("Population: " +
                        countNote(presence.in_view, leftOutBetween(presence, View.start_date, View.end_date)));
  addCountNotes(table, lives.in_view, lives.left_out, lives.findings);
  table.notes[1] = "Survival: " + table.notes[1];
  return std::move(table);
}

}  // namespace spx::console
