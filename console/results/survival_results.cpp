#include "console/results/survival_results.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "spx/core/animal_data.h"
#include "spx/core/estimated_dates.h"
#include "spx/core/meta_population.h"
#include "spx/demography/growth.h"
#include "spx/demography/life_table.h"
#include "spx/demography/survival.h"
#include "spx/project/biology.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

constexpr double FEW = 5;  ///< animals at risk below which a value says little

const std::map<std::string, SURVIVAL_GROUPS> GROUPINGS = {
    {"none", SURVIVAL_GROUPS::NONE},       {"sex", SURVIVAL_GROUPS::SEX},           {"origin", SURVIVAL_GROUPS::ORIGIN},
    {"rearing", SURVIVAL_GROUPS::REARING}, {"location", SURVIVAL_GROUPS::LOCATION}, {"taxon", SURVIVAL_GROUPS::TAXON},
    {"period", SURVIVAL_GROUPS::PERIOD}};

// The level whose locations are compared: the one typed; else the deepest level of the view's locations when there
// are several, or the level below it when there is one; else the second level, which holds the institutions in most
// studbooks.
int levelOf(const std::string& typed) {
  const int levels = static_cast<int>(MetaPop.levels().size());
  if (!typed.empty()) {
    for (int level = 0; level < levels; ++level) {
      if (MetaPop.levels()[static_cast<std::size_t>(level)].name == typed) return level;
    }
    throw UsageError("--level: " + quotedText(typed) + " is not a level of the studbook's locations");
  }
  if (View.demes.empty()) return std::min(1, levels - 1);
  int deepest = 0;
  for (const packed_deme deme : View.demes) deepest = std::max(deepest, MetaPop.getDemeLevel(deme));
  return View.demes.size() > 1 ? deepest : std::min(deepest + 1, levels - 1);
}

std::string yearsText(double days, const time_unit& unit) {
  return std::isnan(days) ? "not reached" : qs_lib::realToString(days / unit.days, unit.decimals);
}

std::string intervalText(double lower, double upper, const time_unit& unit) {
  return yearsText(lower, unit) + " to " + yearsText(upper, unit);
}

std::string percentText(double share) {
  return qs_lib::realToString(share * 100, 1) + " %";
}

std::string medianText(const survival_curve& curve, const time_unit& unit) {
  if (std::isnan(curve.median)) return "not reached";
  return yearsText(curve.median, unit) + " (95 % " + intervalText(curve.median_lower, curve.median_upper, unit) + ") " +
         unit.name;
}

std::string medianNote(const std::string& group, const survival_curve& curve, const time_unit& unit) {
  const double first_year = stepAt(curve, DAYS_PER_YEAR).survival;
  return group + ": " + std::to_string(curve.times) + " watched" + ", " + counted(curve.deaths, "death") + "; median " +
         medianText(curve, unit) + "; mean up to the last age " + yearsText(curve.restricted_mean, unit) +
         (std::isnan(first_year) ? "" : "; first year " + percentText(first_year) + " survive");
}

std::vector<table_column> curveColumns(const time_unit& unit, bool for_people) {
  const std::string since = for_people ? ", since the previous row" : "";
  return {{.name = "group", .title = "Group"},
          {.name = "time",
           .title = "Age",
           .kind = COLUMN_KIND::REAL,
           .decimals = unit.decimals,
           .help = "in " + std::string(unit.name)},
          {.name = "at_risk",
           .title = "At risk",
           .kind = COLUMN_KIND::INTEGER,
           .help = "animals watched at that age; results from fewer than 5 are unreliable"},
          {.name = "deaths", .title = "Deaths", .kind = COLUMN_KIND::INTEGER, .help = "animals that died" + since},
          {.name = "censored",
           .title = "Last seen",
           .kind = COLUMN_KIND::INTEGER,
           .help = "left, lost or still alive" + since},
          {.name = "survival",
           .title = "Survival",
           .kind = COLUMN_KIND::REAL,
           .decimals = 3,
           .help = "share that lives beyond that age (Kaplan-Meier)"},
          {.name = "std_error",
           .title = "Error",
           .kind = COLUMN_KIND::REAL,
           .decimals = 3,
           .help = "its standard error (Greenwood)"},
          {.name = "lower", .title = "Lower", .kind = COLUMN_KIND::REAL, .decimals = 3, .help = "its 95 % interval"},
          {.name = "upper", .title = "Upper", .kind = COLUMN_KIND::REAL, .decimals = 3}};
}

void addStep(Table& table, const std::string& group, const survival_step& step, const time_unit& unit) {
  table.addRow({group, step.time / unit.days, static_cast<std::int64_t>(step.at_risk),
                static_cast<std::int64_t>(step.deaths), static_cast<std::int64_t>(step.censored), step.survival,
                step.std_error, step.lower, step.upper});
}

// For people the curve is shown after the first month and at the ends of the age classes.
void addClasses(Table& table, const std::string& group, const survival_curve& curve, const survival_data& data,
                std::uint32_t number, const time_unit& unit) {
  std::vector<double> ages = {30};
  for (std::size_t at = 1; at < View.number_of_classes; ++at)
    ages.push_back(static_cast<double>(at) * View.class_width);
  std::sort(ages.begin(), ages.end());
  survival_step shown;
  std::size_t next = 0;
  for (const double age : ages) {
    shown.deaths = shown.censored = 0;
    for (; next < curve.steps.size() && curve.steps[next].time <= age; ++next) {
      const double deaths = shown.deaths + curve.steps[next].deaths;
      const double censored = shown.censored + curve.steps[next].censored;
      shown = curve.steps[next];
      shown.deaths = deaths;
      shown.censored = censored;
    }
    shown.time = age;
    shown.at_risk = static_cast<double>(std::count_if(data.times.begin(), data.times.end(), [&](const auto& time) {
      return time.group == number && time.entry < age && age <= time.exit;
    }));
    addStep(table, group, shown, unit);
    if (next == curve.steps.size()) break;
  }
}

// Animals of unknown sex are left out of the test between the sexes: most of them died young.
bool isTested(const std::string& group, SURVIVAL_GROUPS by) {
  return by != SURVIVAL_GROUPS::SEX || group == getEnumName(SEX::MALE) || group == getEnumName(SEX::FEMALE);
}

log_rank_result testOf(const survival_data& data, SURVIVAL_GROUPS by) {
  std::vector<observed_time> times;
  std::copy_if(data.times.begin(), data.times.end(), std::back_inserter(times),
               [&](const observed_time& time) { return isTested(data.groups[time.group], by); });
  return logRankTest(times, data.groups.size());
}

void addTest(Table& table, const survival_data& data, SURVIVAL_GROUPS by) {
  const log_rank_result test = testOf(data, by);
  if (test.degrees != 0) {
    const std::string p = test.p < 0.0001 ? "p < 0.0001" : "p = " + qs_lib::realToString(test.p, 4);
    table.notes.push_back("Log-rank test of the groups: chi-square " + qs_lib::realToString(test.chi_square, 2) + ", " +
                          std::to_string(test.degrees) + " df, " + p + ".");
  }
  if (by == SURVIVAL_GROUPS::SEX) {
    table.notes.push_back(
        "Young that die before their sex is known are in neither curve, so both start too high. The curve "
        "of all animals does not.");
  }
}

double deathsOf(const std::vector<observed_time>& times) {
  return static_cast<double>(std::count_if(times.begin(), times.end(), [](const auto& time) { return time.died; }));
}

survival_settings settingsOf(const survival_choice& choice) {
  survival_settings settings;
  settings.by = GROUPINGS.at(choice.by);
  if (!choice.level.empty() && settings.by != SURVIVAL_GROUPS::LOCATION) {
    throw UsageError("--level chooses the places to compare; it can only be used with --by location");
  }
  if (choice.period_years && settings.by != SURVIVAL_GROUPS::PERIOD) {
    throw UsageError("--period-years can only be used with --by period");
  }
  settings.level = levelOf(choice.level);
  settings.period_years = choice.period_years.value_or(10);
  return settings;
}

Table emptySummary(const time_unit& unit) {
  const std::string in = "in " + std::string(unit.name);
  const auto real = [](const char* name, const char* title, int decimals, std::string help, bool in_text = true) {
    return table_column{.name = name,
                        .title = title,
                        .kind = COLUMN_KIND::REAL,
                        .decimals = decimals,
                        .help = std::move(help),
                        .in_text = in_text};
  };
  return Table({{.name = "group", .title = "Group"},
                {.name = "watched",
                 .title = "Watched",
                 .kind = COLUMN_KIND::INTEGER,
                 .help = "times over which animals were watched"},
                {.name = "deaths", .title = "Deaths", .kind = COLUMN_KIND::INTEGER},
                real("expected", "Expected", 1, "deaths expected if all groups had the same risk"),
                real("median", "Median", unit.decimals, "age that half of the animals reach, " + in),
                real("median_lower", "Lower", unit.decimals, "95 % interval of the median"),
                real("median_upper", "Upper", unit.decimals, ""),
                real("mean", "Mean", unit.decimals, "time lived up to the last age watched, " + in),
                real("mean_error", "Error", unit.decimals, "its standard error"),
                real("chi_square", "Chi-square", 2, "", false),
                real("df", "df", 0, "", false),
                real("p", "p", 4, "", false)});
}

}  // namespace

Table survivalTable(const survival_choice& choice, const time_unit& unit, bool for_people) {
  const survival_settings settings = settingsOf(choice);
  const survival_data data = survivalData(Animals.records, View, presenceSettings(View), settings);
  Table table(curveColumns(unit, for_people));
  table.heading = "Survival: " + viewText();
  table.if_empty = "No animal was watched at a known age.";
  for (std::uint32_t group = 0; group < data.groups.size(); ++group) {
    const survival_curve curve = survivalOf(data, group);
    if (for_people) {
      addClasses(table, data.groups[group], curve, data, group, unit);
    } else {
      for (const survival_step& step : curve.steps) addStep(table, data.groups[group], step, unit);
    }
    table.notes.push_back(medianNote(data.groups[group], curve, unit) + ".");
  }
  if (data.groups.size() > 1) addTest(table, data, settings.by);
  if (table.rows() > 0) addDeathNote(table, deathsOf(data.times));
  addCountNotes(table, data.in_view, data.left_out, data.findings);
  return table;
}

Table survivalSummary(const survival_choice& choice, const time_unit& unit) {
  const survival_settings settings = settingsOf(choice);
  const survival_data data = survivalData(Animals.records, View, presenceSettings(View), settings);
  const log_rank_result test = testOf(data, settings.by);
  Table table = emptySummary(unit);
  table.heading = "Survival: " + viewText();
  table.if_empty = "No animal was watched at a known age.";
  for (std::uint32_t group = 0; group < data.groups.size(); ++group) {
    const survival_curve curve = survivalOf(data, group);
    const bool tested = test.degrees != 0 && isTested(data.groups[group], settings.by);
    table.addRow({data.groups[group], curve.times, curve.deaths, tested ? test.groups[group].expected : NOT_KNOWN,
                  curve.median / unit.days, curve.median_lower / unit.days, curve.median_upper / unit.days,
                  curve.restricted_mean / unit.days, curve.restricted_error / unit.days,
                  tested ? test.chi_square : NOT_KNOWN, tested ? static_cast<double>(test.degrees) : NOT_KNOWN,
                  tested ? test.p : NOT_KNOWN});
  }
  if (data.groups.size() > 1) addTest(table, data, settings.by);
  if (table.rows() > 0) addDeathNote(table, deathsOf(data.times));
  addCountNotes(table, data.in_view, data.left_out, data.findings);
  return table;
}

namespace {

std::vector<table_column> lifeColumns(const time_unit& unit) {
  const std::string in = "in " + std::string(unit.name);
  const auto real = [](const char* name, const char* title, int decimals, std::string help) {
    return table_column{
        .name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = decimals, .help = std::move(help)};
  };
  const auto hidden = [](const char* name) {
    return table_column{.name = name, .title = name, .kind = COLUMN_KIND::REAL, .decimals = 4, .in_text = false};
  };
  return {{.name = "sex", .title = "Sex"},
          real("age", "Age", std::fmod(View.class_width, unit.days) == 0 ? 0 : 2, "at the start of the class, " + in),
          real("at_risk", "At risk", 1, "animals at risk; with prorating, part of a class counts as that part"),
          real("deaths", "Deaths", 1, ""),
          real("q", "q", 3, "chance of dying in the class"),
          real("p", "p", 3, "chance of surviving it: 1 - q"),
          real("l", "l", 3, "share of the newborn that reaches it: the product of p"),
          real("e", "e", 1, "life expectancy at that age, " + in),
          real("births", "Births", 1, "offspring that count: of the parent's sex, or half of all (--same-sex no)"),
          real("m", "m", 3, "offspring per animal over the width of a class"),
          hidden("q_lower"),
          hidden("q_upper"),
          hidden("l_lower"),
          hidden("l_upper"),
          hidden("exposure"),
          hidden("L"),
          hidden("T"),
          hidden("v"),
          hidden("stable_age")};
}

void addLives(Table& table, const char* sex, const std::vector<life_table_row>& rows, const time_unit& unit) {
  const growth_rates growth = growthRates(rows, PARENT_AGE::MIDDLE);
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const life_table_row& row = rows[at];
    const bool has_growth = !growth.stable_age.empty();
    table.addRow({sex, row.age / unit.days, row.at_risk, row.deaths, row.q, row.p, row.l, row.e / unit.days, row.births,
                  row.m, row.q_lower, row.q_upper, row.l_lower, row.l_upper, row.exposure / unit.days,
                  row.L / unit.days, row.T / unit.days, has_growth ? Cell(growth.reproductive_value[at]) : Cell(),
                  has_growth ? Cell(growth.stable_age[at]) : Cell()});
  }
}

double deathsOf(const std::vector<life_table_row>& rows) {
  double deaths = 0;
  for (const life_table_row& row : rows) deaths += row.deaths;
  return deaths;
}

// Reports the first year in two parts, since deaths in the first month would be hidden in a yearly figure.
std::string infantNote(const AnimalData& store) {
  const age_classes infants{{0, 30, DAYS_PER_YEAR}, DAYS_PER_YEAR};
  DataFilter view = View;
  view.handle_unknown = HANDLE_UNKNOWN::EQUAL;
  const life_tallies data = lifeTallies(store, view, presenceSettings(View), infants, 0);
  const auto rows = lifeTableOfAll(data, view.same_sex);
  const auto part = [&rows](std::size_t at) {
    return at < rows.size() ? percentText(rows[at].q) + " (95 % " + percentText(rows[at].q_lower) + " to " +
                                  percentText(rows[at].q_upper) + ")"
                            : std::string("not known");
  };
  return "Infant deaths, all sexes: in the first 30 days " + part(0) + ", from then to one year " + part(1) + ".";
}

void addLifeNotes(Table& table, const life_tallies& data, const std::vector<life_table_row>& females,
                  const std::vector<life_table_row>& males) {
  table.notes.push_back(infantNote(Animals));
  addDeathNote(table, deathsOf(females) + deathsOf(males));
  for (const auto* rows : {&females, &males}) {
    const bool ends_alive = !rows->empty() && rows->back().p > 0;
    if (ends_alive) {
      table.notes.push_back(std::string(rows == &females ? "Females" : "Males") +
                            " live beyond the table: e counts only the time in it.");
    }
  }
  table.notes.push_back("Values from fewer than " + qs_lib::realToString(FEW, 0) + " animals at risk are unreliable.");
  table.notes.push_back(counted(data.placed_births, "birth") + " counted for a parent; " +
                        std::to_string(data.unplaced_births) + " without a parent of known age that was present.");
}

}  // namespace

Table lifeTableTable(const time_unit& unit) {
  const life_tallies data = lifeTallies(Animals, View, presenceSettings(View), ageClasses(View), gestationDays());
  Table table(lifeColumns(unit));
  table.heading = "Life table: " + viewText();
  table.if_empty = "No animal was watched at a known age.";
  const auto females = lifeTable(data.of(0, SEX::FEMALE), data.classes, SEX::FEMALE, View.same_sex);
  const auto males = lifeTable(data.of(0, SEX::MALE), data.classes, SEX::MALE, View.same_sex);
  addLives(table, "female", females, unit);
  addLives(table, "male", males, unit);
  addLives(table, "all", lifeTableOfAll(data, View.same_sex), unit);
  if (table.rows() > 0) addLifeNotes(table, data, females, males);
  addCountNotes(table, data.in_view, data.left_out, data.findings);
  return table;
}

}  // namespace spx::console
